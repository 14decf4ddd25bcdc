#pragma once

#include "cli/feed.h"

#include <opencv2/videoio.hpp>

namespace cli {

/// A video file as a recording.
class VideoFeed : public Feed
{
public:
    explicit VideoFeed(const std::string& path);

    DataPointer next(const ZR::Corvale::Type::Time& timestamp) override;
    double rate() const override { return _rate; }
    std::optional<std::uint64_t> length() const override;

private:
    void checkEnd() const;

    const std::string _path;
    cv::VideoCapture _capture;
    double _rate;
    std::uint64_t _declared; // frames, an estimate in some formats; 0 if unknown
    std::uint64_t _given = 0;
    bool _waiting; // whether a next frame is there
};

} // namespace cli
