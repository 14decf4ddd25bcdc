#pragma once

#include "corvale/data/datatime.h"

#include <boost/shared_ptr.hpp>
#include <opencv2/core/mat.hpp>

#include <string>

namespace ZR::Corvale {
class Data;
}

namespace cli {

using DataPointer = boost::shared_ptr<ZR::Corvale::Data>;

/// A picture as OpenCV reads it (8 or 16 bits, one channel, or blue, green, red) as a value: 16 bits of one
/// channel are a DepthImage in millimetres, 8 bits a GrayscaleImage, three channels a ColorImage.
/// `name` says where it comes from. Failure: `Failure` for any other kind of pixels.
DataPointer valueOfPicture(const cv::Mat& picture, const std::string& name,
                           const ZR::Corvale::Type::Time& timestamp);

/// An image value as a picture to look at, 8 bits of one channel or blue, green, red: a mask in black and
/// white, labels and distances in colours. Empty if the value is no image, or an image of plain numbers.
cv::Mat pictureOfValue(const DataPointer& value);

/// One line of text that is the same in every run: an image as its kind and size, any other value as its
/// text form. "no value" for null.
std::string textOfValue(const DataPointer& value);

/// How many elements a list has. Failure: `Failure` for a value that is no list.
std::string lengthOfValue(const DataPointer& value);

} // namespace cli
