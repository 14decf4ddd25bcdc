#include "cli/feed.h"

#include "cli/failure.h"
#include "cli/picturefeed.h"
#include "cli/picturefiles.h"
#include "cli/videofeed.h"

#include <boost/filesystem.hpp>

namespace cli {

std::unique_ptr<Feed> Feed::open(const std::string& path)
{
    namespace fs = boost::filesystem;
    boost::system::error_code error;
    const fs::file_status status = fs::status(path, error);

    if (status.type() == fs::directory_file)
        return std::make_unique<PictureFeed>(picturesInFolder(path));
    if (!fs::exists(status)) {
        if (isPicturePattern(path))
            return std::make_unique<PictureFeed>(picturesOfPattern(path));
        throw Failure("cannot read \"" + path + "\": there is no such file; check the path of the feed");
    }
    if (!fs::is_regular_file(status))
        throw Failure("cannot read \"" + path + "\": it is no file, nor a folder of pictures");
    if (hasPictureEnding(path))
        return std::make_unique<PictureFeed>(path);
    return std::make_unique<VideoFeed>(path);
}

} // namespace cli
