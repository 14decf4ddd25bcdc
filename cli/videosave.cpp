#include "cli/videosave.h"

#include "cli/container.h"
#include "cli/failure.h"
#include "cli/outputfile.h"
#include "cli/picturesave.h"

#include <boost/filesystem.hpp>
#include <opencv2/imgproc.hpp>

namespace cli {

namespace {

namespace fs = boost::filesystem;

int codecOf(const std::string& path)
{
    return fs::path(path).extension() == ".avi" ? cv::VideoWriter::fourcc('M', 'J', 'P', 'G')
                                                : cv::VideoWriter::fourcc('m', 'p', '4', 'v');
}

// How much to add to a side: codecs want it even, and narrow ones make them write beyond their buffers.
int margin(int side)
{
    constexpr int least = 16;
    return side < least ? least - side : side % 2;
}

// In colour and of a size that codecs take: the last row and column go on where needed.
cv::Mat frameOf(const cv::Mat& picture)
{
    cv::Mat colour = picture;
    if (picture.channels() == 1)
        cv::cvtColor(picture, colour, cv::COLOR_GRAY2BGR);
    cv::Mat frame;
    cv::copyMakeBorder(colour, frame, 0, margin(colour.rows), 0, margin(colour.cols), cv::BORDER_REPLICATE);
    return frame;
}

std::string text(const cv::Size& size)
{
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

} // namespace

VideoSave::VideoSave(const std::string& path, const std::string& sink, double rate)
    : _path(path),
      _sink(sink),
      _rate(rate)
{
    if (fs::exists(path) && !fs::is_regular_file(path))
        throw Failure("cannot save \"" + sink + "\" to \"" + path + "\": that is no ordinary file");
    OutputFile(path).close(); // the writer below would not say why it cannot
}

VideoSave::~VideoSave()
{
    try {
        finish();
    } catch (const Failure&) { // whoever wants to know finishes the file
    }
}

void VideoSave::begin(const cv::Size& size)
{
    _size = size;
    // An absolute path is never taken for an address in the net.
    if (!_writer.open(fs::absolute(_path).string(), cv::CAP_FFMPEG, codecOf(_path), _rate, size))
        throw Failure("cannot save \"" + _sink + "\" to \"" + _path + "\": no video of " + text(size) +
                      " pixels can be written there; save to numbered pictures, as in name-%04d.png");
    for (; _missed > 0; --_missed)
        _writer.write(cv::Mat::zeros(size, CV_8UC3));
}

void VideoSave::write(const Moment&, const DataPointer& value)
{
    if (!value && !_writer.isOpened()) {
        ++_missed;
        return;
    }
    const cv::Mat frame =
        value ? frameOf(pictureToSave(value, _sink, _path)) : cv::Mat(cv::Mat::zeros(_size, CV_8UC3));
    if (!_writer.isOpened())
        begin(frame.size());
    if (frame.size() != _size)
        throw Failure("cannot save \"" + _sink + "\" to \"" + _path + "\": its pictures change from " +
                      text(_size) + " to " + text(frame.size()) +
                      "; save to numbered pictures, as in name-%04d.png");
    _writer.write(frame);
}

void VideoSave::finish()
{
    if (_finished)
        return;
    _finished = true;
    boost::system::error_code error;
    if (!_writer.isOpened()) {
        fs::remove(_path, error); // an empty file is no video
        return;
    }
    _writer.release();
    // The writer keeps failed writes to itself; they show in the file.
    if (missingBytes(_path) != 0 ||
        !cv::VideoCapture(fs::absolute(_path).string(), cv::CAP_FFMPEG).isOpened())
        throw Failure("cannot write all of \"" + _path + "\"; make room there, or save to another place");
}

} // namespace cli
