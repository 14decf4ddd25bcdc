#pragma once

#include "cli/feed.h"

#include <opencv2/core/mat.hpp>

#include <vector>

namespace cli {

/// Pictures of one size and kind as a recording, one a frame; or one picture, again and again.
class PictureFeed : public Feed
{
public:
    /// One picture, which never ends.
    explicit PictureFeed(const std::string& file);
    /// A row of pictures, at least one.
    explicit PictureFeed(const std::vector<std::string>& files);

    DataPointer next(const ZR::Corvale::Type::Time& timestamp) override;
    std::optional<std::uint64_t> length() const override;
    bool isEndless() const override { return _endless; }

private:
    const std::vector<std::string> _files;
    const bool _endless;
    std::size_t _given = 0;
    cv::Mat _picture; // the first one until others follow
};

} // namespace cli
