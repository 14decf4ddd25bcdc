#pragma once

#include "cli/save.h"

namespace cli {

/// Writes a picture for each image, numbered by its frame. Frames without value have no picture.
class PictureSave : public Save
{
public:
    PictureSave(const std::string& pattern, const std::string& sink);

    void write(const Moment& moment, const DataPointer& value) override;
    void finish() override {}

private:
    const std::string _pattern;
    const std::string _sink;
};

/// The picture of a value that is to be saved to `path`; a `Failure` if it is no image.
cv::Mat pictureToSave(const DataPointer& value, const std::string& sink, const std::string& path);

} // namespace cli
