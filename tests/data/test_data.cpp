#include "corvale/data/data.h"
#include "corvale/data/dataaudiobuffer.h"
#include "corvale/data/datacolor.h"
#include "corvale/data/datacolorimage.h"
#include "corvale/data/datahistogram.h"
#include "corvale/data/datahuman.h"
#include "corvale/data/datalabelimage.h"
#include "corvale/data/dataobject2d.h"
#include "corvale/data/dataregion3.h"
#include "corvale/data/datavector6.h"

#include "support/logcapture.h"

#include <gtest/gtest.h>

#include <locale>
#include <sstream>

namespace {

using namespace ZR::Corvale;
using Values = std::vector<boost::shared_ptr<Data>>;

boost::shared_ptr<Data> value(const Data& data)
{
    return boost::make_shared<Data>(data);
}

// To how many of the pointer types the value converts.
template <typename... Payloads>
int pointersAmong(const Data& data)
{
    return (0 + ... + (static_cast<Payloads*>(data) != nullptr));
}
const auto pointersGiven =
    pointersAmong<Type::ColorImage, Type::GrayscaleImage, Type::BinaryImage, Type::LabelImage,
                  Type::DepthImage, Type::XYZImage, Type::MatrixImage, Type::Histogram, Type::AudioBuffer,
                  Type::Color, Type::Vector2, Type::Vector3, Type::Vector4, Type::Vector6, Type::Region2,
                  Type::Region3, Type::Human, Type::Object2D, Type::Object3D, Type::Time, Type::Duration,
                  Type::Lambda, std::string, Values>;

// As bool, int, unsigned, float, double, text and list.
std::string conversions(const Data& data)
{
    std::ostringstream text;
    text << data.operator bool() << ' ' << data.operator int() << ' ' << data.operator unsigned int() << ' '
         << data.operator float() << ' ' << data.operator double() << " '" << data.operator std::string()
         << "' " << data.operator Values().size();
    return text.str();
}

TEST(Data, TypeNamesGoBothWays)
{
    for (int number = Invalid; number <= Lambda; ++number) {
        const auto type = static_cast<DataType>(number);
        EXPECT_EQ(Data::getTypeFromName(Data::getTypeName(type)), type);
    }
    EXPECT_EQ(Data::getTypeName(BinaryImage), "BinaryImage");
    EXPECT_EQ(Data::getTypeName(Unknown), "Unknown");
    EXPECT_EQ(Data::getTypeName(static_cast<DataType>(1000)), "Invalid");
    EXPECT_EQ(Data::getTypeName(static_cast<DataType>(-1)), "Invalid");
    EXPECT_EQ(Data::getTypeFromName("float"), Invalid);
    EXPECT_EQ(Data::getTypeFromName(std::string("Float\0", 6)), Invalid);
}

TEST(Data, NumbersConvertOnlyAsFarAsTheyShould)
{
    EXPECT_EQ(conversions(true), "1 0 0 0 0 '' 0");
    EXPECT_EQ(conversions(-3), "0 -3 0 -3 -3 '' 0");
    EXPECT_EQ(conversions(4'000'000'000u), "0 0 4000000000 4e+09 4e+09 '' 0");
    EXPECT_EQ(conversions(2.5f), "0 0 0 2.5 2.5 '' 0");
    EXPECT_EQ(conversions(2.5), "0 0 0 0 2.5 '' 0");
    EXPECT_EQ(conversions("7"), "0 0 0 0 0 '7' 0");
    EXPECT_EQ(conversions(Values(2)), "0 0 0 0 0 '' 2");
    EXPECT_EQ(conversions(Data()), "0 0 0 0 0 '' 0");
}

TEST(Data, PayloadsAreSharedAndGivenOnlyAsTheirOwnType)
{
    const auto labels = boost::make_shared<Type::LabelImage>(2, 3);
    Data data(labels);
    EXPECT_EQ(data.getType(), LabelImage);
    EXPECT_EQ(data.operator Type::LabelImage*(), labels.get());
    EXPECT_EQ(data.getRawData().get(), labels.get());
    EXPECT_EQ(pointersGiven(data), 1);

    for (Data other : {Data("text"), Data(Values(1)), Data(1.0f, 2.0f), Data(Type::Color(1, 2, 3)),
                       Data(boost::make_shared<Type::Human>())})
        EXPECT_EQ(pointersGiven(other), 1) << Data::getTypeName(other.getType());
    for (Data other : {Data(), Data(1), Data(boost::shared_ptr<void>(labels))})
        EXPECT_EQ(pointersGiven(other), 0) << Data::getTypeName(other.getType());
}

TEST(Data, NullPayloadsKeepTheirType)
{
    Data image{boost::shared_ptr<Type::ColorImage>()};
    EXPECT_EQ(image.getType(), ColorImage);
    EXPECT_EQ(pointersGiven(image), 0);
    EXPECT_EQ(image.toString(), "");
    // The class is not known here: what ends it comes with the pointer.
    Data lambda{boost::shared_ptr<Type::Lambda>()};
    EXPECT_EQ(lambda.getType(), Lambda);
    EXPECT_EQ(Data().getType(), Invalid);
    EXPECT_EQ(Data().toString(), "");
}

TEST(Data, ArraysShareTheirElementsAndHistogramsCopyTheirBins)
{
    const Values elements{value(1), nullptr};
    const Data array(elements);
    EXPECT_EQ(array.operator Values(), elements);

    float bins[] = {1, 2, 3};
    const Type::Histogram wrapping(bins, 3, 3);
    const Data copied(wrapping);
    bins[1] = 9;
    const Type::Histogram* copy = copied;
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->data(0, 1), 2.0f);
    EXPECT_EQ(copy->getChannels(), 3u);
}

TEST(Data, TextForms)
{
    const auto object = boost::make_shared<Type::Object2D>(nullptr);
    object->setPropertyData(1, value(5));
    const auto human = boost::make_shared<Type::Human>();
    human->setId(7);
    human->setName("Ada");
    const Values nested{value(1), nullptr, value("x"), value(Values{value(2u)})};

    const auto color = boost::make_shared<Type::ColorImage>(3, 2);
    const auto labels = boost::make_shared<Type::LabelImage>(3, 2);
    std::ostringstream pixels;
    pixels << static_cast<const void*>(color->mat.data) << '}' << static_cast<const void*>(labels->mat.data)
           << '}';
    const std::string first = pixels.str().substr(0, pixels.str().find('}') + 1);

    const std::pair<Data, std::string> rows[] = {
        {color, "{Image Width=3 Height=2 Data=" + first},
        {labels, "{LabelImage Width=3 Height=2 Data=" + pixels.str().substr(first.size())},
        {true, "True"},
        {false, "False"},
        {-3, "-3"},
        {1.5f, "1.5f"},
        {0.1f, "0.1f"},
        {1e10, "1e+10"},
        {1234567.0, "1.23457e+06"},
        {"a text", "a text"},
        {Data(1, 2), "{X=1 Y=2}"},
        {Data(1, 2, 3), "{X=1 Y=2 Z=3}"},
        {Data(1, 2, 3, 4), "{X=1 Y=2 Z=3 W=4}"},
        {Data(1, 2, 3, 4, 5, 6.5f), "{X=1 Y=2 Z=3 WX=4 WY=5 WZ=6.5}"},
        {Type::Region2(1, 2, 3, 4), "{Start=[1,2] End=[3,4]}"},
        {Type::Region3(1, 2, 3, 4, 5, 6), "{Start=[1,23] End=[4,56]}"},
        {Type::Time(-1'999'999), "{Time second=-1}"},
        {Type::Duration(1'999), "{Duration Milliseconds=1}"},
        {Type::Histogram(6, 3), "{Histogram Channels=3 Size=2}"},
        {Type::Histogram(6, 0), "{Histogram Channels=0 Size=0}"},
        {human, "{Human Id=7 Name=Ada}"},
        {object, "{Object2D { 1 = 5}}"},
        {Values{}, "{}"},
        {nested, "{1;NULL;x;{2}}"},
        {Type::Color(1, 2, 3), "{void*}"},
        {boost::shared_ptr<void>(human), "{void*}"}};
    for (auto [data, text] : rows)
        EXPECT_EQ(data.toString(), text);
}

TEST(Data, TextIsTheSameInEveryLocale)
{
    struct Commas : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale former = std::locale::global(std::locale(std::locale::classic(), new Commas));
    EXPECT_EQ(Data(Values{value(1234567), value(1.5)}).toString(), "{1234567;1.5}");
    const support::LogCapture log;
    RK_LOG(rk::log::Debug, "test") << 1234567;
    std::locale::global(former);
    EXPECT_EQ(log.records()[0].message, "1234567");
}

} // namespace
