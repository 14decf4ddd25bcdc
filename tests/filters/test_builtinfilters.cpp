#include "corvale/data/datalambda.h"
#include "corvale/runtime/port.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <algorithm>

using namespace support;
using namespace ZR::Corvale;

namespace {

// A filter, its ports as `optional name[Type Type]`, and inputs that it computes from.
struct Row
{
    std::string name;
    std::string inputs;
    std::string outputs;
    Values good;
};

std::string operands(const std::string& images)
{
    const std::string types = "[Integer Float Double " + images + "]";
    return "left" + types + " right" + types;
}

// In the order of registration.
std::vector<Row> rows()
{
    const auto color = imageOf(DataType::ColorImage, cv::Mat(2, 3, CV_8UC3, cv::Scalar::all(1)));
    const auto gray = imageOf(DataType::GrayscaleImage, cv::Mat(2, 3, CV_8UC1, cv::Scalar(1)));
    const auto binary = imageOf(DataType::BinaryImage, cv::Mat(2, 3, CV_8UC1, cv::Scalar(1)));
    const auto label = imageOf(DataType::LabelImage, cv::Mat(2, 3, CV_32SC1, cv::Scalar(1)));
    const auto array = value(Values{color});
    const auto lambda = value(Type::Lambda::createLambda(FilterRunner().filters["Identity"]));
    // clang-format off
    std::vector<Row> table = {
        {"Accum", "in[ColorImage GrayscaleImage DepthImage] factor[Float]", "out", {color, value(0.5f)}},
        {"SlidingWindow", "in[ColorImage GrayscaleImage DepthImage] size[Integer]", "out", {color, value(3)}},
        {"Add", operands("ColorImage GrayscaleImage BinaryImage"), "out", {color, color}},
        {"Append", "item optional array[Array]", "out", {color, array}},
        {"Apply", "fun[Lambda] param[Array]", "out", {lambda, array}},
        {"BoundingBox", "in[LabelImage]", "out[Array] inputSize[Vector2]", {label}},
        {"Curry", "fun[Lambda] param[Array]", "out", {lambda, array}},
        {"Density", "in[LabelImage] min[Integer] max[Integer]", "out[LabelImage]", {label, value(1), value(9)}},
        {"Dilation", "in[BinaryImage GrayscaleImage DepthImage] size[Integer]", "out[BinaryImage GrayscaleImage DepthImage]", {binary, value(3)}},
        {"Dispatch", "optional in state[Boolean]", "ontrue onfalse", {color, value(true)}},
        {"Draw", "in data optional color", "out", {color, array, value("red")}},
        {"Duplicate", "in", "left right", {color}},
        {"Erosion", "in[BinaryImage GrayscaleImage DepthImage] size[Integer]", "out[BinaryImage GrayscaleImage DepthImage]", {binary, value(3)}},
        {"Extract", "in[ColorImage] region[Region2]", "out[ColorImage]", {color, value(Type::Region2(0, 0, 1, 1))}},
        {"Geodesic", "in[LabelImage]", "out[LabelImage]", {label}},
        {"Gravity", "in[LabelImage]", "out[Array]", {label}},
        {"Head", "in[Array]", "out", {array}},
        {"Histogram", "in[ColorImage GrayscaleImage]", "out", {color}},
        {"Hue", "in[ColorImage] color[Integer]", "out[GrayscaleImage]", {color, value(1)}},
        {"Identity", "in", "out", {color}},
        {"Invert", "in[Boolean ColorImage GrayscaleImage BinaryImage]", "out", {color}},
        {"Labelize", "in[BinaryImage DepthImage GrayscaleImage] optional tolerance[Integer]", "out[LabelImage]", {binary, value(0)}},
        {"ImprovedLabelize",
         "inputImage[BinaryImage DepthImage GrayscaleImage] optional tolerance[Integer] kernel[Integer] min[Float] max[Float]",
         "labelizedImage[LabelImage] dilatedImage[BinaryImage DepthImage GrayscaleImage]",
         {binary, value(0), value(3), value(0.0f), value(1.0f)}},
        {"Luminance", "in[ColorImage]", "out[GrayscaleImage]", {color}},
        {"Mask", "mask[BinaryImage] in[ColorImage GrayscaleImage LabelImage DepthImage BinaryImage XYZImage]",
         "out", {binary, color}},
        {"Max", operands("ColorImage GrayscaleImage"), "out", {color, color}},
        {"Min", operands("ColorImage GrayscaleImage"), "out", {gray, gray}},
        {"Multiplex", "optional master optional slave", "out", {color, gray}},
        {"Multiply", operands("ColorImage BinaryImage GrayscaleImage"), "out", {color, color}},
        {"Otsu", "in[GrayscaleImage]", "out[BinaryImage]", {gray}},
        {"Print", "optional in", "out", {color}},
        {"Ratio", "in[LabelImage Array] min[Float] max[Float]", "out", {label, value(0.0f), value(9.0f)}},
        {"Saturation", "in[ColorImage]", "out[GrayscaleImage]", {color}},
        {"ScaleDown", "in[ColorImage BinaryImage DepthImage GrayscaleImage LabelImage] factor[Integer]", "out", {color, value(1)}},
        {"SNN", "in[GrayscaleImage ColorImage] size[Integer]", "out[BinaryImage]", {gray, value(3)}},
        {"Sub", operands("ColorImage GrayscaleImage DepthImage"), "out", {gray, gray}},
        {"Threshold", "in[ColorImage DepthImage GrayscaleImage] ceil[Integer]", "out[BinaryImage]", {gray, value(1)}},
        {"ToColorImage", "in[ColorImage BinaryImage LabelImage GrayscaleImage AudioBuffer DepthImage XYZImage]",
         "out[ColorImage]", {color}},
    };
    // clang-format on
    std::string in, out;
    for (int count = 1; count <= 8; ++count) {
        in += (count > 1 ? " in" : "in") + std::to_string(count);
        out += (count > 1 ? " out" : "out") + std::to_string(count);
        table.push_back({"Mandatory" + std::to_string(count), in, out, Values(count, color)});
    }
    return table;
}

std::string describe(const std::vector<boost::shared_ptr<Port>>& ports)
{
    std::string text;
    for (const auto& port : ports) {
        text += (text.empty() ? "" : " ") + std::string(port->isOptional() ? "optional " : "");
        text += port->getName();
        for (std::size_t i = 0; i < port->getTypes().size(); ++i)
            text += (i == 0 ? "[" : " ") + Data::getTypeName(port->getTypes()[i]);
        text += port->getTypes().empty() ? "" : "]";
    }
    return text;
}

TEST(BuiltinFilters, StandInTheirOrderWithTheirPorts)
{
    const auto filters = Filters::makeBuiltinFilters();
    const std::vector<Row> table = rows();
    ASSERT_EQ(filters.size(), table.size());
    for (std::size_t i = 0; i < filters.size(); ++i) {
        EXPECT_EQ(filters[i]->getName(), table[i].name);
        EXPECT_EQ(describe(filters[i]->getInputs()), table[i].inputs);
        EXPECT_EQ(describe(filters[i]->getOutputs()), table[i].outputs);
    }
}

std::string categoryOf(const std::string& filter)
{
    static const std::map<std::string, std::string> others = {
        {"SlidingWindow", "slidingwindow"}, {"SNN", "snn"}, {"ImprovedLabelize", "labelize"}};
    const auto other = others.find(filter);
    const std::string usual = char(std::tolower(filter[0])) + filter.substr(1);
    return "corvale.filter." + (other != others.end() ? other->second : usual);
}

class BadInputs : public testing::TestWithParam<Row>
{
protected:
    // Runs the filter, which may log nothing or its error line; tells whether a value came out.
    bool givesValue(const Values& inputs)
    {
        run.log.clear();
        const Values outputs = run(row.name, inputs);
        const auto lines = run.log.messages(rk::log::Error);
        EXPECT_EQ(run.log.messages(rk::log::Error, category), lines);
        const bool grown = row.name == "ImprovedLabelize" && !outputs.empty(); // but not labelled
        const std::string word = row.name == "SNN" ? "Dilation" : grown ? "Labelize" : row.name;
        refused = lines == std::vector<std::string>{" [Invalid Input] -> " + word + " -> ..."};
        EXPECT_TRUE(refused || lines.empty());
        return std::any_of(outputs.begin(), outputs.end(), [](const auto& output) { return bool(output); });
    }
    Values with(std::size_t input, const boost::shared_ptr<Data>& bad)
    {
        Values inputs = row.good;
        inputs[input] = bad;
        return inputs;
    }

    const Row row = GetParam();
    const std::string category = categoryOf(row.name);
    const bool labels = row.name == "Labelize" || row.name == "ImprovedLabelize";
    FilterRunner run;
    const std::vector<boost::shared_ptr<Port>>& ports = run.filters[row.name]->getInputs();
    bool refused = false;
};

TEST_P(BadInputs, ThatAreMissingGiveNoValue)
{
    const bool takesFewer = row.name == "Append" || row.name == "Multiplex";
    for (std::size_t i = 0; i < row.good.size(); ++i) {
        const bool takesNull = takesFewer || (row.name == "Draw" && i == 2) || (labels && i == 1);
        EXPECT_EQ(givesValue(with(i, nullptr)), takesNull) << i;
        EXPECT_EQ(givesValue(Values(row.good.begin(), row.good.begin() + i)), i > 0 && takesFewer) << i;
    }
    Values tooMany = row.good;
    tooMany.push_back(row.good.back());
    givesValue(tooMany); // some take what they need
}

TEST_P(BadInputs, OfAKindThatThePortRefusesGiveNoValue)
{
    Values bads;
    for (const Data& plain : {Data(true), Data(1), Data(1u), Data(1.0f), Data(1.0), Data("a"), Data(Values()),
                              Data(), Data(boost::shared_ptr<Type::MatrixImage>()),
                              Data(boost::shared_ptr<Type::Lambda>()), Data(boost::shared_ptr<void>())})
        bads.push_back(value(plain));
    for (int kind = DataType::ColorImage; kind <= DataType::XYZImage; ++kind)
        bads.push_back(imageOf(DataType(kind), cv::Mat(2, 3, matTypeOf(DataType(kind)))));
    for (std::size_t i = 0; i < ports.size(); ++i)
        for (const auto& bad : bads) {
            const DataType kind = bad->getType();
            // What is no Boolean counts as false, what is no number as 0; a mask of other bytes is as good as
            // one of bits, and some images grow that get no labels.
            const bool taken =
                row.name == "Dispatch" || (labels && i > 0) ||
                (row.name == "ImprovedLabelize" &&
                 (kind == DataType::ColorImage || kind == DataType::XYZImage)) ||
                (row.name == "Mask" && kind <= DataType::GrayscaleImage && kind >= DataType::ColorImage);
            EXPECT_TRUE(ports[i]->isCompatible(kind) || givesValue(with(i, bad)) == taken)
                << i << " " << Data::getTypeName(kind);
        }
}

TEST_P(BadInputs, OfAKindWithoutWhatBelongsToItAreRefused)
{
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const DataType kind = row.good[i]->getType();
        if (ports[i]->getTypes().empty())
            continue; // what takes everything does not look into it
        Filters::visitImageClass(kind, [&](auto imageClass) {
            using Image = typename decltype(imageClass)::type;
            const int cube[] = {2, 3, 4};
            for (const auto& bad : {value(boost::shared_ptr<Image>()), imageOf(kind, cv::Mat(2, 3, CV_8UC2)),
                                    imageOf(kind, cv::Mat(3, cube, Image::MatType))})
                EXPECT_TRUE(!givesValue(with(i, bad)) && refused) << i;
        });
        const auto hollow = value(boost::shared_ptr<Type::Lambda>());
        EXPECT_TRUE(kind != DataType::Lambda || (!givesValue(with(i, hollow)) && refused)) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(AllFilters, BadInputs, testing::ValuesIn(rows()),
                         [](const auto& info) { return info.param.name; });

} // namespace
