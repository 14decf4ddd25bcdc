#include "cli/save.h"

#include "cli/failure.h"
#include "cli/picturefiles.h"
#include "cli/picturesave.h"
#include "cli/textsave.h"
#include "cli/videosave.h"

#include <boost/filesystem/path.hpp>

namespace cli {

std::unique_ptr<Save> Save::open(const std::string& path, const std::string& sink, double rate)
{
    const std::string ending = boost::filesystem::path(path).extension().string();
    if (ending == ".avi" || ending == ".mp4")
        return std::make_unique<VideoSave>(path, sink, rate);
    if (ending == ".txt" || ending == ".csv" || ending == ".log")
        return std::make_unique<TextSave>(OutputFile(path));
    if (hasPictureEnding(path)) {
        if (isPicturePattern(path) && path.find('*') == std::string::npos)
            return std::make_unique<PictureSave>(path, sink);
        throw Failure("cannot save \"" + sink + "\" to \"" + path +
                      "\": a picture a frame needs a number in its name, as in name-%04d.png");
    }
    throw Failure("cannot save \"" + sink + "\" to \"" + path +
                  "\": give a video (.avi, .mp4), pictures (name-%04d.png) or a text (.txt, .csv, .log)");
}

} // namespace cli
