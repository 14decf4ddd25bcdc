#include "cli/picturefeed.h"

#include "cli/failure.h"

#include <opencv2/imgcodecs.hpp>

namespace cli {

namespace {

cv::Mat read(const std::string& file)
{
    cv::Mat picture;
    try {
        picture = cv::imread(file, cv::IMREAD_ANYCOLOR | cv::IMREAD_ANYDEPTH);
    } catch (const cv::Exception&) { // a header that promises too much
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
