#include "cli/picture.h"

#include "cli/failure.h"

#include "corvale/data/data.h"
#include "corvale/data/databinaryimage.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datadepthimage.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/datamatriximage.h"
#include "corvale/data/dataxyzimage.h"

#include <boost/make_shared.hpp>
#include <opencv2/imgproc.hpp>

namespace cli {

using namespace ZR::Corvale;

namespace {

template <typename Kind>
DataPointer imageValue(const cv::Mat& pixels, const std::string& name, const Type::Time& timestamp)
{
    return boost::make_shared<Data>(boost::make_shared<Kind>(pixels, name, timestamp));
}

cv::Mat swapped(const cv::Mat& picture)
{
    cv::Mat result;
    cv::cvtColor(picture, result, cv::COLOR_RGB2BGR);
    return result;
}

// Calls `use` with the image in a value. False if there is none.
template <typename Use>
bool withImage(Data& value, Use use)
{
    const auto as = [&use](auto* image) { return image != nullptr && (use(*image), true); };
    switch (value.getType()) {
    case DataType::ColorImage:
        return as(static_cast<Type::ColorImage*>(value));
    case DataType::GrayscaleImage:
        return as(static_cast<Type::GrayscaleImage*>(value));
    case DataType::BinaryImage:
        return as(static_cast<Type::BinaryImage*>(value));
    case DataType::LabelImage:
        return as(static_cast<Type::LabelImage*>(value));
    case DataType::DepthImage:
        return as(static_cast<Type::DepthImage*>(value));
    case DataType::XYZImage:
        return as(static_cast<Type::XYZImage*>(value));
    case DataType::MatrixImage:
        return as(static_cast<Type::MatrixImage*>(value));
    default:
        return false;
    }
}

template <typename Kind>
bool fits(const Kind& image)
{
    return image.mat.type() == Kind::MatType && !image.mat.empty();
}

// What there is to look at; empty if there is nothing.
cv::Mat visible(Type::ColorImage& image)
{
    return fits(image) ? swapped(image.mat) : cv::Mat();
}
cv::Mat visible(Type::GrayscaleImage& image)
{
    return fits(image) ? image.mat : cv::Mat();
}
cv::Mat visible(Type::BinaryImage& image)
{
    return fits(image) ? cv::Mat(image.mat != 0) : cv::Mat();
}
cv::Mat visible(Type::MatrixImage&)
{
    return {};
}
template <typename Kind>
cv::Mat visible(Kind& image)
{
    const boost::shared_ptr<Type::ColorImage> colour = image.toColorImage();
    return colour ? visible(*colour) : cv::Mat();
}

// A text on one line, whatever the value holds.
std::string onOneLine(const std::string& text)
{
    std::string line;
    for (const char c : text) {
        if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else if (c != '\0')
            line += c;
    }
    return line;
}

} // namespace

DataPointer valueOfPicture(const cv::Mat& picture, const std::string& name, const Type::Time& timestamp)
{
    switch (picture.type()) {
    case CV_8UC1:
        return imageValue<Type::GrayscaleImage>(picture, name, timestamp);
    case CV_16UC1:
        return imageValue<Type::DepthImage>(picture, name, timestamp);
    case CV_8UC3:
        return imageValue<Type::ColorImage>(swapped(picture), name, timestamp);
    case CV_16UC3: {
        cv::Mat bytes;
        picture.convertTo(bytes, CV_8U, 1.0 / 257.0);
        return imageValue<Type::ColorImage>(swapped(bytes), name, timestamp);
    }
    default:
        throw Failure("cannot use the pixels of \"" + name +
                      "\": pictures of 8 or 16 bits in grey or colour can be fed; convert it");
    }
}

cv::Mat pictureOfValue(const DataPointer& value)
{
    cv::Mat picture;
    if (value)
        withImage(*value, [&picture](auto& image) { picture = visible(image); });
    return picture;
}

std::string textOfValue(const DataPointer& value)
{
    if (!value)
        return "no value";

    std::string text;
    const bool isImage = withImage(*value, [&](const auto& image) {
        // The text form of an image tells where its pixels lie in memory.
        text = "{" + Data::getTypeName(value->getType()) + " Width=" + std::to_string(image.mat.cols) +
               " Height=" + std::to_string(image.mat.rows) + "}";
    });
    if (isImage)
        return text;
    if (const auto* elements = static_cast<std::vector<DataPointer>*>(*value)) {
        for (const DataPointer& element : *elements)
            text += ";" + (element ? textOfValue(element) : "NULL");
        return "{" + text.erase(0, 1) + "}";
    }
    return onOneLine(value->toString());
}

std::string lengthOfValue(const DataPointer& value)
{
    const auto* elements = value ? static_cast<std::vector<DataPointer>*>(*value) : nullptr;
    if (elements == nullptr)
        throw Failure("cannot count " + textOfValue(value).substr(0, 60) + ", which is no list; use --print");
    return std::to_string(elements->size());
}

} // namespace cli
