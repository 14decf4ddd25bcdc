#include "cli/videofeed.h"

#include "cli/container.h"
#include "cli/failure.h"

#include <boost/filesystem.hpp>

#include <cmath>

namespace cli {

namespace {

// A number that a container gives, which may be nonsense.
double sensible(double number, double most)
{
    return std::isfinite(number) && number > 0.0 && number <= most ? number : 0.0;
}

} // namespace

VideoFeed::VideoFeed(const std::string& path)
    : _path(path),
      // An absolute path is never taken for an address in the net.
      _capture(boost::filesystem::absolute(path).string(), cv::CAP_FFMPEG),
      _rate(sensible(_capture.get(cv::CAP_PROP_FPS), 100'000.0)),
      _declared(static_cast<std::uint64_t>(sensible(_capture.get(cv::CAP_PROP_FRAME_COUNT), 1e15))),
      _waiting(_capture.isOpened() && _capture.grab())
{
    if (const std::uint64_t missing = missingBytes(path))
        throw Failure("the video \"" + path + "\" is cut off, " + std::to_string(missing) +
                      " bytes of it are missing; copy it again");
    if (!_waiting)
        throw Failure("cannot read \"" + path +
                      "\": it is neither a video nor a picture that can be decoded");
}

std::optional<std::uint64_t> VideoFeed::length() const
{
    return _declared > 0 ? std::optional<std::uint64_t>(_declared) : std::nullopt;
}

DataPointer VideoFeed::next(const ZR::Corvale::Type::Time& timestamp)
{
    if (!_waiting) {
        checkEnd();
        return {};
    }
    cv::Mat frame;
    if (!_capture.retrieve(frame) || frame.empty())
        throw Failure("frame " + std::to_string(_given) + " of the video \"" + _path +
                      "\" cannot be decoded; copy or record it again");
    ++_given;
    _waiting = _capture.grab();
    return valueOfPicture(frame, _path, timestamp);
}

// The count of frames is an estimate in some formats: only a tenth and more is taken for damage.
void VideoFeed::checkEnd() const
{
    if (static_cast<double>(_given + 2) < 0.9 * static_cast<double>(_declared))
        throw Failure("the video \"" + _path + "\" ends after " + std::to_string(_given) + " of " +
                      std::to_string(_declared) + " frames: it is damaged; copy or record it again");
}

} // namespace cli
