#include "corvale/data/datamatriximage.h"
#include "filters/images.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace support;
using namespace ZR::Corvale;

namespace {

TEST(DataConversion, SharesPixelsAndHandsOnTheOrigin)
{
    const cv::Mat distances(2, 3, CV_16UC1), mask(2, 3, CV_8UC1);
    const auto depth = imageOf(DataType::DepthImage, distances);
    EXPECT_EQ(dataToCvMat(depth).data, distances.data);
    const auto binary = cvMatToData(mask, DataType::BinaryImage, depth);
    EXPECT_EQ(binary->getType(), DataType::BinaryImage);
    EXPECT_TRUE(hasOrigin(binary));
    EXPECT_EQ(dataToCvMat(binary).data, mask.data);
}

TEST(DataConversion, ThrowsForWhatIsNoImage)
{
    const auto says = [](const char* text) { return testing::ThrowsMessage<std::runtime_error>(text); };
    const auto matrixImage = boost::make_shared<Data>(boost::make_shared<Type::MatrixImage>(2, 2));
    const auto hollow = boost::make_shared<Data>(boost::shared_ptr<Type::ColorImage>());
    for (const auto& value : {matrixImage, hollow, boost::make_shared<Data>(1), boost::shared_ptr<Data>()}) {
        EXPECT_THAT([&] { dataToCvMat(value); }, says("Cannot convert Corvale data to cv::Mat"));
        EXPECT_THAT([&] { cvMatToData(cv::Mat(), DataType::Invalid, value); }, // the reference comes first
                    says("Cannot convert Corvale Data Corvale Image"));
    }
    const auto image = imageOf(DataType::GrayscaleImage, cv::Mat(1, 1, CV_8UC1));
    for (const DataType type : {DataType::MatrixImage, DataType::Integer, DataType::Invalid})
        EXPECT_THAT([&] { cvMatToData(cv::Mat(), type, image); },
                    says("Cannot convert Corvale data to cv::Mat"));
}

} // namespace
