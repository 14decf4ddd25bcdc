#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale.h"
#include "corvale/runtime/port.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <algorithm>
#include <fstream>
#include <iterator>

using namespace support;
using namespace ZR::Corvale;

namespace {

using support::Color; // not the class

using Ports = std::vector<boost::shared_ptr<Port>>;

std::vector<std::string> names()
{
    std::vector<std::string> result;
    for (const auto& filter : Filters::makeBuiltinFilters())
        result.push_back(filter->getName());
    return result;
}

TEST(BuiltinFilters, StandInTheirOrderWithTheirPorts)
{
    ZR::Corvale::Corvale engine(0);
    std::string text;
    for (const std::string& name : names()) {
        text += name + "\n";
        for (const std::string& input : engine.getFilterInputs(name))
            text += "  in: " + input + "\n";
        for (const std::string& output : engine.getFilterOutputs(name))
            text += "  out: " + output + "\n";
    }
    std::ifstream expected(FILTERS_TXT);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(expected), {}));
}

// Inputs that a filter computes from: for each port an image if it takes one, else its first type.
Values goodInputs(const std::string& filter, const Ports& ports)
{
    static const std::map<DataType, boost::shared_ptr<Data>> others = {
        {DataType::Boolean, value(true)},
        {DataType::Integer, value(1)},
        {DataType::Float, value(0.5f)},
        {DataType::Region2, value(Type::Region2(0, 0, 1, 1))},
        {DataType::Array, value(Values{value(1)})},
        {DataType::Lambda, value(Type::Lambda::createLambda(FilterRunner().filters["Identity"]))}};
    Values inputs;
    for (const auto& port : ports) {
        const auto& types = port->getTypes();
        const auto image = std::find_if(types.begin(), types.end(), [](DataType type) {
            return type >= DataType::ColorImage && type <= DataType::XYZImage;
        });
        const DataType kind = image != types.end() ? *image : types.empty() ? Color : types[0];
        const auto other = others.find(kind);
        inputs.push_back(other != others.end()
                             ? other->second
                             : imageOf(kind, cv::Mat(2, 3, matTypeOf(kind), cv::Scalar::all(1))));
    }
    if (filter == "Draw")
        inputs = {inputs[0], others.at(DataType::Array), value("red")};
    return inputs;
}

class BadInputs : public testing::TestWithParam<std::string>
{
protected:
    // Runs the filter, which may log nothing or its error line; tells whether a value came out.
    bool givesValue(const Values& inputs)
    {
        run.log.clear();
        const Values outputs = run(name, inputs);
        const auto lines = run.log.messages(rk::log::Error);
        EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter." + category), lines);
        const bool grown = name == "ImprovedLabelize" && !outputs.empty(); // but not labelled
        const std::string word = name == "SNN" ? "Dilation" : grown ? "Labelize" : name;
        refused = lines == std::vector<std::string>{" [Invalid Input] -> " + word + " -> ..."};
        EXPECT_TRUE(refused || lines.empty());
        return std::any_of(outputs.begin(), outputs.end(), [](const auto& output) { return bool(output); });
    }
    Values with(std::size_t input, const boost::shared_ptr<Data>& bad)
    {
        Values inputs = good;
        inputs[input] = bad;
        return inputs;
    }

    const std::string name = GetParam();
    const std::string category = name == "SlidingWindow"      ? "slidingwindow"
                                 : name == "SNN"              ? "snn"
                                 : name == "ImprovedLabelize" ? "labelize"
                                                              : char(std::tolower(name[0])) + name.substr(1);
    const bool labels = name == "Labelize" || name == "ImprovedLabelize";
    FilterRunner run;
    const Ports& ports = run.filters[name]->getInputs();
    const Values good = goodInputs(name, ports);
    bool refused = false;
};

TEST_P(BadInputs, ThatAreMissingGiveNoValue)
{
    const bool takesFewer = name == "Append" || name == "Multiplex";
    for (std::size_t i = 0; i < good.size(); ++i) {
        const bool takesNull = takesFewer || (name == "Draw" && i == 2) || (labels && i == 1);
        EXPECT_EQ(givesValue(with(i, nullptr)), takesNull) << i;
        EXPECT_EQ(givesValue(Values(good.begin(), good.begin() + i)), i > 0 && takesFewer) << i;
    }
    Values tooMany = good;
    tooMany.push_back(good.back());
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
                name == "Dispatch" || (labels && i > 0) ||
                (name == "ImprovedLabelize" &&
                 (kind == DataType::ColorImage || kind == DataType::XYZImage)) ||
                (name == "Mask" && kind <= DataType::GrayscaleImage && kind >= DataType::ColorImage);
            EXPECT_TRUE(ports[i]->isCompatible(kind) || givesValue(with(i, bad)) == taken)
                << i << " " << Data::getTypeName(kind);
        }
}

TEST_P(BadInputs, OfAKindWithoutWhatBelongsToItAreRefused)
{
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const DataType kind = good[i]->getType();
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

INSTANTIATE_TEST_SUITE_P(AllFilters, BadInputs, testing::ValuesIn(names()),
                         [](const auto& info) { return info.param; });

} // namespace
