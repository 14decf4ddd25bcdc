#include "cli/picturesave.h"

#include "cli/failure.h"
#include "cli/outputfile.h"
#include "cli/picturefiles.h"

#include "corvale/data/data.h"

#include <boost/filesystem.hpp>
#include <opencv2/imgcodecs.hpp>

#include <unistd.h>

#include <cstring>
#include <vector>

namespace cli {

PictureSave::PictureSave(const std::string& pattern, const std::string& sink) : _pattern(pattern), _sink(sink)
{
    const boost::filesystem::path folder = boost::filesystem::path(pattern).parent_path();
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
        throw Failure("cannot write pictures to \"" + pattern + "\": " + std::strerror(errno) +
                      "; check the folder and its rights");
}

void PictureSave::write(const Moment& moment, const DataPointer& value)
{
    if (!value)
        return;
    const cv::Mat picture = pictureToSave(value, _sink, _pattern);
    std::vector<unsigned char> bytes;
    try {
        cv::imencode(boost::filesystem::path(_pattern).extension().string(), picture, bytes);
    } catch (const cv::Exception&) {
    }
    if (bytes.empty())
        throw Failure("cannot save \"" + _sink + "\" to \"" + _pattern +
                      "\": this kind of picture does not take it; save to .png");
    OutputFile file(pictureOfNumber(_pattern, moment.number));
    file.write(std::string(bytes.begin(), bytes.end()));
    file.close();
}

cv::Mat pictureToSave(const DataPointer& value, const std::string& sink, const std::string& path)
{
    const cv::Mat picture = pictureOfValue(value);
    if (picture.empty())
        throw Failure("cannot save \"" + sink + "\" to \"" + path + "\": its value is " +
                      textOfValue(value).substr(0, 60) + ", no picture; save it to a .txt file");
    return picture;
}

} // namespace cli
