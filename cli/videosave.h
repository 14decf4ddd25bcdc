#pragma once

#include "cli/save.h"

#include <opencv2/videoio.hpp>

namespace cli {

/// Writes the images of a sink as a video, a frame of it for each frame of the run: frames without value
/// are black, so that the video stays in step with the recording.
class VideoSave : public Save
{
public:
    VideoSave(const std::string& path, const std::string& sink, double rate);
    ~VideoSave() override;

    void write(const Moment& moment, const DataPointer& value) override;
    void finish() override;

private:
    void begin(const cv::Size& size);

    const std::string _path;
    const std::string _sink;
    const double _rate;
    cv::VideoWriter _writer; // opened when the first image tells the size
    cv::Size _size;
    std::uint64_t _missed = 0; // frames without value before it
    bool _finished = false;
};

} // namespace cli
