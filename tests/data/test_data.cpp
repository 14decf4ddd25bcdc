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

#include <fstream>
#include <locale>
#include <sstream>

namespace {

using namespace ZR::Corvale;
using Values = std::vector<boost::shared_ptr<Data>>;

boost::shared_ptr<Data> value(const Data& data)
{
    return boost::make_shared<Data>(data);
}

template <typename... Contents>
Values valuesOf(const Contents&... contents)
{
    return {value(contents)...};
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

TEST(Data, TypeNamesGoBothWays)
{
    for (int number = Invalid; number <= Lambda; ++number) {
        const auto type = static_cast<DataType>(number);
        EXPECT_EQ(Data::getTypeFromName(Data::getTypeName(type)), type);
    }
    EXPECT_EQ(Data::getTypeName(BinaryImage), "BinaryImage");
    for (const int unknown : {1000, -1})
        EXPECT_EQ(Data::getTypeName(static_cast<DataType>(unknown)), "Invalid");
    EXPECT_EQ(Data::getTypeFromName("float"), Invalid);
    EXPECT_EQ(Data::getTypeFromName(std::string("Float\0", 6)), Invalid);
}

TEST(Data, PayloadsAreSharedAndKeepTheirTypeAlsoWhenNull)
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

    Data image{boost::shared_ptr<Type::ColorImage>()};
    EXPECT_EQ(image.getType(), ColorImage);
    EXPECT_EQ(pointersGiven(image), 0);
    EXPECT_EQ(image.toString(), "");
    // The class is not known here: what ends it comes with the pointer.
    EXPECT_EQ(Data(boost::shared_ptr<Type::Lambda>()).getType(), Lambda);
}

TEST(Data, ArraysShareTheirElementsAndHistogramsCopyTheirBins)
{
    const Values elements{value(1), nullptr};
    EXPECT_EQ(Data(elements).operator Values(), elements);

    float bins[] = {1, 2, 3};
    const Data copied(Type::Histogram(bins, 3, 3));
    bins[1] = 9;
    const Type::Histogram* copy = copied;
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->data(0, 1), 2.0f);
    EXPECT_EQ(copy->getChannels(), 3u);
}

// One line for each value: its type, its text, and as bool, int, unsigned, float, double, text and list.
TEST(Data, ArraysInsideOneAnotherAreWrittenAsFarAsTheStackReachesAndEnd)
{
    auto nested = boost::make_shared<Data>(7);
    for (int i = 0; i < 200000; ++i)
        nested = boost::make_shared<Data>(Values{nullptr, nested, boost::make_shared<Data>(i)});
    EXPECT_NE(nested->toString().find("{NULL;...;"), std::string::npos);
}

TEST(Data, GivesTextsAndNumbersOnlyAsFarAsItShould)
{
    const auto object = boost::make_shared<Type::Object2D>(nullptr);
    object->setPropertyData(1, value(5));
    const auto human = boost::make_shared<Type::Human>();
    human->setId(7);
    human->setName("Ada");
    const Values nested{value(1), nullptr, value("x"), value(Values{value(2u)})};
    std::ostringstream table;
    const Values rows = valuesOf(
        Data(), true, false, -3, 4'000'000'000u, 2.5f, 0.1f, 2.5, 1e10, 1234567.0, "7", Values{}, nested,
        Data(1, 2), Data(1, 2, 3), Data(1, 2, 3, 4), Data(1, 2, 3, 4, 5, 6.5f), Type::Region2(1, 2, 3, 4),
        Type::Region3(1, 2, 3, 4, 5, 6), Type::Time(-1'999'999), Type::Duration(1'999), Type::Histogram(6, 3),
        Type::Histogram(6, 0), human, object, Type::Color(1, 2, 3), boost::shared_ptr<void>(human));
    for (const auto& data : rows)
        table << Data::getTypeName(data->getType()) << " " << data->toString() << " | "
              << data->operator bool() << ' ' << data->operator int() << ' ' << data->operator unsigned int()
              << ' ' << data->operator float() << ' ' << data->operator double() << " '"
              << data->operator std::string() << "' " << data->operator Values().size() << '\n';
    std::ifstream expected(CONVERSIONS);
    EXPECT_EQ(table.str(), std::string(std::istreambuf_iterator<char>(expected), {}));

    const auto color = boost::make_shared<Type::ColorImage>(3, 2);
    const auto labels = boost::make_shared<Type::LabelImage>(3, 2);
    std::ostringstream images;
    images << "{Image Width=3 Height=2 Data=" << static_cast<const void*>(color->mat.data)
           << "}{LabelImage Width=3 Height=2 Data=" << static_cast<const void*>(labels->mat.data) << '}';
    EXPECT_EQ(Data(color).toString() + Data(labels).toString(), images.str());
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
