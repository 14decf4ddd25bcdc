#pragma once

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/kinds.h"
#include "corvale/filters/values.h"

#include <gtest/gtest.h>
#include <opencv2/core.hpp>

namespace support {

using ZR::Corvale::DataType;

constexpr DataType Color = DataType::ColorImage;
constexpr DataType Gray = DataType::GrayscaleImage;
constexpr DataType Binary = DataType::BinaryImage;
constexpr DataType Depth = DataType::DepthImage;
constexpr DataType Label = DataType::LabelImage;

/// A size, and whether the matrix of that size is part of a larger one.
struct Shape
{
    cv::Size size;
    bool part;

    /// Pixels at random, the least and the greatest value more often than others.
    cv::Mat random(int type) const
    {
        static cv::RNG generator(4711);
        const cv::Size larger(size.width + 5, size.height + 3);
        cv::Mat matrix(part ? larger : size, type);
        const double greatest = matrix.depth() == CV_8U ? 255 : matrix.depth() == CV_16U ? 65535 : 9e8;
        const double least = greatest == 9e8 ? -9e8 : 0; // integers take no wider range
        if (!matrix.empty())
            generator.fill(matrix, cv::RNG::UNIFORM, least - greatest / 8, greatest + greatest / 8);
        return part ? matrix(cv::Rect(cv::Point(2, 1), size)) : matrix;
    }
};

/// Calls `test(shape)` for sizes that leave a rest to loops in steps, alone and as part of a larger matrix.
template <typename Test>
void forEachShape(Test test)
{
    const cv::Size sizes[] = {{0, 0}, {1, 1}, {2, 1}, {1, 5}, {7, 3}, {34, 2}, {65, 5}, {130, 3}};
    for (const cv::Size& size : sizes)
        for (const bool part : {false, true}) {
            SCOPED_TRACE(testing::Message() << size << (part ? " as a part" : ""));
            test(Shape{size, part});
        }
}

/// The type of matrix of a kind of images.
inline int matTypeOf(DataType kind)
{
    int type = -1;
    ZR::Corvale::Filters::visitImageClass(
        kind, [&](auto imageClass) { type = decltype(imageClass)::type::MatType; });
    return type;
}

/// One component, of 8, 16 or 32 bits.
inline int at(const cv::Mat& matrix, int y, int x, int component)
{
    const int i = x * matrix.channels() + component;
    if (matrix.depth() == CV_32S)
        return matrix.ptr<int>(y)[i];
    return matrix.depth() == CV_8U ? matrix.ptr<uchar>(y)[i] : matrix.ptr<ushort>(y)[i];
}

/// An image of that kind, with an origin that no image has by default.
inline boost::shared_ptr<ZR::Corvale::Data> imageOf(DataType kind, const cv::Mat& matrix)
{
    using namespace ZR::Corvale;
    static const auto origin = boost::make_shared<Data>(
        boost::make_shared<Type::GrayscaleImage>(cv::Mat(), "camera", Type::Time(5), 1.5f, 0.5f));
    return cvMatToData(matrix, kind, origin);
}

inline bool hasOrigin(const boost::shared_ptr<ZR::Corvale::Data>& data)
{
    using namespace ZR::Corvale;
    bool result = false;
    Filters::visitImageClass(data->getType(), [&](auto imageClass) {
        const auto& image = *Filters::payload<typename decltype(imageClass)::type>(data);
        result = image.name == "camera" && image.timestamp == Type::Time(5) && image.fovX == 1.5f &&
                 image.fovY == 0.5f;
    });
    return result;
}

/// Expects an image of that kind with components `literal(y, x, component)`.
template <typename Literal>
void expectImage(const boost::shared_ptr<ZR::Corvale::Data>& actual, cv::Size size, DataType kind,
                 bool withOrigin, Literal literal)
{
    const cv::Mat matrix = ZR::Corvale::dataToCvMat(actual);
    ASSERT_EQ(actual->getType(), kind);
    ASSERT_EQ(hasOrigin(actual), withOrigin);
    ASSERT_EQ(matrix.size(), size);
    ASSERT_EQ(matrix.type(), matTypeOf(kind));
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            for (int c = 0; c < matrix.channels(); ++c)
                ASSERT_EQ(at(matrix, y, x, c), literal(y, x, c)) << "row " << y << " column " << x;
}

} // namespace support
