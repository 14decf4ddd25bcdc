#include "corvale/filters/dataconversion.h"

#include "corvale/filters/kinds.h"
#include "corvale/filters/values.h"

#include <stdexcept>
#include <string>

namespace ZR::Corvale {

using Filters::visitImageClass;

namespace {

const char* const noImage = "Cannot convert Corvale data to cv::Mat";

// Where an image comes from.
struct Origin
{
    std::string name = "unknow";
    Type::Time timestamp;
    float fovX = 0.0f;
    float fovY = 0.0f;
};

// Calls `read` with the image in a value. False if there is none.
template <typename Reader>
bool readImage(const boost::shared_ptr<Data>& value, Reader read)
{
    bool found = false;
    const auto readPayload = [&](auto imageClass) {
        if (const auto* image = Filters::payload<typename decltype(imageClass)::type>(value)) {
            read(*image);
            found = true;
        }
    };
    return value && visitImageClass(value->getType(), readPayload) && found;
}

boost::shared_ptr<Data> newImage(const cv::Mat& matrix, DataType type, const Origin& origin)
{
    boost::shared_ptr<Data> result;
    const auto build = [&](auto imageClass) {
        using Image = typename decltype(imageClass)::type;
        result = boost::make_shared<Data>(
            boost::make_shared<Image>(matrix, origin.name, origin.timestamp, origin.fovX, origin.fovY));
    };
    if (!visitImageClass(type, build))
        throw std::runtime_error(noImage);
    return result;
}

} // namespace

cv::Mat dataToCvMat(const boost::shared_ptr<Data>& value)
{
    cv::Mat matrix;
    if (!readImage(value, [&](const auto& image) { matrix = image.mat; }))
        throw std::runtime_error(noImage);
    return matrix;
}

boost::shared_ptr<Data> cvMatToData(const cv::Mat& matrix, const DataType& type,
                                    const boost::shared_ptr<Data>& reference)
{
    Origin origin;
    const auto read = [&](const auto& image) {
        origin = {image.name, image.timestamp, image.fovX, image.fovY};
    };
    if (!readImage(reference, read))
        throw std::runtime_error("Cannot convert Corvale Data Corvale Image");
    return newImage(matrix, type, origin);
}

boost::shared_ptr<Data> cvMatToData(const cv::Mat& matrix, const DataType& type)
{
    return newImage(matrix, type, Origin());
}

boost::shared_ptr<Data> cloned(const boost::shared_ptr<Data>& image)
{
    boost::shared_ptr<Data> copy;
    if (!readImage(image, [&](const auto& original) { copy = boost::make_shared<Data>(original.clone()); }))
        throw std::runtime_error(noImage);
    return copy;
}

} // namespace ZR::Corvale
