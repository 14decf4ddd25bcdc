#include "cli/picturefeed.h"

#include "cli/failure.h"

#include <opencv2/imgcodecs.hpp>

#include <fstream>
#include <iterator>
#include <limits>

namespace cli {

namespace {

// Decoders fill what is missing with grey, or complain in words of their own.
bool isCutOff(const std::string& bytes)
{
    if (bytes.compare(0, 4, "\x89PNG") == 0)
        return bytes.find("IEND") == std::string::npos;
    if (bytes.compare(0, 3, "\xff\xd8\xff") == 0)
        return bytes.rfind("\xff\xd9") == std::string::npos;
    return false;
}

cv::Mat read(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    if (stream.tellg() > std::numeric_limits<int>::max()) // what a decoder takes
        throw Failure("the picture \"" + file + "\" has more than 2 GiB; feed a smaller one");
    stream.seekg(0);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (isCutOff(bytes))
        throw Failure("the picture \"" + file + "\" is cut off; copy it again");

    cv::Mat picture;
    try {
        const cv::Mat view(1, static_cast<int>(bytes.size()), CV_8UC1, const_cast<char*>(bytes.data()));
        picture = cv::imdecode(view, cv::IMREAD_ANYCOLOR | cv::IMREAD_ANYDEPTH);
    } catch (const cv::Exception&) { // nothing in it, or a header that promises too much
    }
    if (picture.empty())
        throw Failure("cannot read the picture \"" + file + "\": it is damaged or of an unknown format");
    return picture;
}

std::string sizeOf(const cv::Mat& picture)
{
    return std::to_string(picture.cols) + " x " + std::to_string(picture.rows) +
           (picture.channels() == 1 ? " grey" : " colour") + (picture.elemSize1() == 1 ? "" : ", 16 bit");
}

} // namespace

PictureFeed::PictureFeed(const std::string& file) : _files{file}, _endless(true), _picture(read(file)) {}

PictureFeed::PictureFeed(const std::vector<std::string>& files)
    : _files(files),
      _endless(false),
      _picture(read(files.front()))
{
}

DataPointer PictureFeed::next(const ZR::Corvale::Type::Time& timestamp)
{
    if (_endless)
        return valueOfPicture(_picture, _files.front(), timestamp);
    if (_given == _files.size())
        return {};

    const std::string& file = _files[_given];
    const cv::Mat picture = _given == 0 ? _picture : read(file);
    if (picture.size() != _picture.size() || picture.type() != _picture.type())
        throw Failure("the picture \"" + file + "\" is " + sizeOf(picture) + " where the first one is " +
                      sizeOf(_picture) + "; feed pictures of one size and kind");
    ++_given;
    return valueOfPicture(picture, file, timestamp);
}

std::optional<std::uint64_t> PictureFeed::length() const
{
    return _endless ? std::nullopt : std::optional<std::uint64_t>(_files.size());
}

} // namespace cli
