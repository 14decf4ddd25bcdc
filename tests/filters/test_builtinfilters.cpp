#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale.h"
#include "corvale/runtime/port.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <algorithm>
#include <fstream>
#include <regex>

using namespace support;
using namespace ZR::Corvale;

namespace {

using support::Color; // not the class

using Ports = std::vector<boost::shared_ptr<Port>>;

// A port of the page that ends in N stands for the ports 1 to N of the filters 1 to 8.
TEST(BuiltinFilters, HaveThePortsThatTheirPageLists)
{
    ZR::Corvale::Corvale engine(0);
    ASSERT_TRUE(engine.createClassificationFilter("KNNClassification", ZR::Corvale::KNN, KNN_XML));
    std::map<std::string, std::string> listed, present; // by filter
    for (const std::string& name : engine.getFilters()) {
        for (const std::string& input : engine.getFilterInputs(name))
            present[name] += "in " + input + "\n";
        for (const std::string& output : engine.getFilterOutputs(name))
            present[name] += "out " + output + "\n";
    }
    const std::regex row(R"(### (\w+).*|\| (in|out) \| `(\w+?)(N?)` \| (optional )?(?:any|([\w, ]+)) \|.*)");
    std::ifstream page(FILTERS_PAGE);
    std::smatch part;
    for (std::string line, name; std::getline(page, line);) {
        if (!std::regex_match(line, part, row))
            continue;
        const std::string port = part.format(part[6].matched ? "$2 $5[$6] $3" : "$2 $5$3");
        if (part[1].matched)
            name = part[1];
        else if (part[4].length() == 0)
            listed[name] += port + "\n";
        else
            for (char last = '1'; last <= '8'; ++last)
                for (char number = '1'; number <= last; ++number)
                    listed[std::string("Mandatory") + last] += port + number + "\n";
    }
    EXPECT_EQ(listed, present);
}

// Inputs that a filter computes from: for each port an image if it takes one, else its first type.
Values goodInputs(const std::string& filter, const Ports& ports)
{
    static const auto identity = Type::Lambda::createLambda(FilterRunner().filters["Identity"]);
    static const Values others = {value(true),     value(1),
                                  value(0.5f),     value(Type::Region2(0, 0, 1, 1)),
                                  value(identity), value(Values{value(1)})};
    Values inputs;
    for (const auto& port : ports) {
        const auto& types = port->getTypes();
        const auto image =
            std::find_if(types.begin(), types.end(), [](auto type) { return matTypeOf(type) >= 0; });
        const DataType kind = image != types.end() ? *image : types.empty() ? Color : types[0];
        const auto other = std::find_if(others.begin(), others.end(),
                                        [kind](const auto& other) { return other->getType() == kind; });
        inputs.push_back(other != others.end() ? *other
                                               : imageOf(kind, cv::Mat::ones(2, 3, matTypeOf(kind))));
    }
    if (filter == "Draw")
        inputs = {inputs[0], others.back(), value("red")};
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

INSTANTIATE_TEST_SUITE_P(AllFilters, BadInputs, testing::ValuesIn(ZR::Corvale::Corvale(0).getFilters()),
                         [](const auto& info) { return info.param; });

} // namespace
