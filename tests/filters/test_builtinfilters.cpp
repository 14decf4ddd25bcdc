#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale.h"
#include "corvale/runtime/port.h"
#include "filters/filterrunner.h"
#include "filters/images.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <fstream>
#include <iostream>
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

// Values at the limits of a kind: pixels of several patterns, so labels below 0 and above all, and floats
// that are no numbers; regions and points far outside or in the wrong order; lambdas of all filters, and of
// none.
Values extremes(DataType kind, const FilterRunner& run)
{
    const float far = INFINITY, big = FLT_MAX;
    Values values;
    const auto add = [&](DataType its, const auto&... contents) {
        if (kind == its)
            (values.push_back(value(contents)), ...);
    };
    add(DataType::Integer, INT_MIN, -1, 0, 2, 255, 256, 65535, 65536, 16777217, INT_MAX - 1, INT_MAX);
    add(DataType::Float, NAN, far, -far, big, -big, FLT_MIN, 1e10f, -0.5f, 0.0f, 1.0f);
    add(DataType::Double, double(NAN), double(far), DBL_MAX, -DBL_MAX, DBL_MIN);
    add(DataType::Array, Values(), Values{nullptr}, Values{value(Data())}, Values(1000, value(1)));
    add(DataType::Lambda, boost::make_shared<Type::Lambda>(boost::shared_ptr<Type::Lambda_p>()));
    for (const auto& [name, filter] : run.filters)
        add(DataType::Lambda, Type::Lambda::createLambda(filter));
    for (const float first : {-far, -big, -9.0f, 0.0f, 3.0f, 5e9f, NAN})
        for (const float last : {far, big, 99.0f, 0.0f, NAN}) {
            const Type::Region2 region(first, 0, last, last);
            add(DataType::Region2, region);
            add(DataType::Array, Values{value(region), value(region.start), value(region.end)});
        }
    for (const DataType part : {DataType::Integer, DataType::Float, Gray, DataType::Lambda})
        if (kind == DataType::Array)
            for (const auto& extreme : extremes(part, run))
                values.push_back(value(Values{extreme, extreme}));
    if (const int type = matTypeOf(kind); type >= 0)
        for (const auto& [columns, rows] : {std::pair(0, 0), {1, 1}, {3, 2}, {2, 3}, {70, 1}})
            for (const unsigned int bits : {0u, 1u, 40u, ~0u, 0x80000000u, 0x7fffffffu, 0x7f800000u}) {
                cv::Mat whole(rows, columns + 2, type);
                for (std::size_t i = 0; i < whole.total() * whole.elemSize(); ++i)
                    whole.data[i] = uchar(bits >> i % 4 * 8);
                values.push_back(imageOf(kind, whole.colRange(1, columns + 1)));
            }
    return values;
}

// Values and pixels, without addresses.
std::string shown(const Values& values)
{
    std::string text;
    for (const auto& value : values) {
        const DataType kind = value ? value->getType() : DataType::Invalid;
        const cv::Mat pixels = matTypeOf(kind) < 0 ? cv::Mat() : dataToCvMat(value).clone();
        text += kind == DataType::Array ? "{" + shown(*value) + "}"
                : matTypeOf(kind) < 0   ? value ? value->toString() : "null"
                                        : std::to_string(pixels.cols) + " columns ";
        text.append(pixels.datastart, pixels.dataend) += ", ";
    }
    return text;
}

class BadInputs : public testing::TestWithParam<std::string>
{
protected:
    // Runs the filter, which may log nothing or its error line; tells whether a value came out.
    bool givesValue(const Values& inputs)
    {
        run.log.clear();
        ++tried;
        const Values outputs = run(name, inputs);
        const auto lines = run.log.messages(rk::log::Error);
        EXPECT_EQ(run.log.messages(rk::log::Error, "corvale.filter." + category), lines);
        const bool grown = name == "ImprovedLabelize" && !outputs.empty(); // but not labelled
        const std::string word = name == "SNN" ? "Dilation" : grown ? "Labelize" : name;
        refused = lines == std::vector<std::string>{" [Invalid Input] -> " + word + " -> ..."};
        EXPECT_TRUE(refused || lines.empty());
        return std::any_of(outputs.begin(), outputs.end(), [](const auto& output) { return bool(output); });
    }
    bool isOneOf(const std::string& names)
    {
        return (" " + names + " ").find(" " + name + " ") != names.npos;
    }
    // What comes out, as a text: valid values; nothing, and an error line unless the inputs are of kinds that
    // do not go together, there are no pixels, or it is a former result; or "thrown" where the page says so.
    std::string outcome(const Values& inputs)
    {
        const DataType kind = inputs[0]->getType(), second = inputs.back()->getType();
        const std::string before = shown(inputs);
        run.log.clear();
        try {
            const Values outputs = run(name, inputs);
            const auto errors = run.log.count(rk::log::Error);
            const bool none = std::count(outputs.begin(), outputs.end(), nullptr) == long(outputs.size());
            const bool quiet = isOneOf("Accum Apply Head SlidingWindow") ||
                               (name == "Draw" && kind != Color) || (name == "Multiply" && kind == Gray) ||
                               (isOneOf("Add Max Min Multiply Sub") && second != kind) ||
                               (name == "Labelize" && dataToCvMat(inputs[0]).empty());
            EXPECT_TRUE(none ? errors == 1 || (errors == 0 && quiet) : errors == 0) << before;
            for (const auto& output : outputs)
                EXPECT_TRUE(!output || matTypeOf(output->getType()) < 0 ||
                            dataToCvMat(output).type() == matTypeOf(output->getType()));
            EXPECT_EQ(shown(inputs), before) << "they are not the filter's to change";
            return shown(outputs);
        } catch (const cv::Exception&) {
            const bool below0 =
                isOneOf("Dilation Erosion ImprovedLabelize") && int(*inputs[inputs.size() / 2]) < 0;
            EXPECT_TRUE(below0 || name == "Apply" ||
                        (isOneOf("Add Mask Multiply") &&
                         dataToCvMat(inputs[0]).size() != dataToCvMat(inputs[1]).size()))
                << before;
            return "thrown";
        }
    }
    static void TearDownTestSuite() { std::cout << tried << " bad inputs tried\n"; }
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
    inline static std::size_t tried = 0;
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

// Each with each of the first input; what comes next is computed as ever.
TEST_P(BadInputs, AtTheLimitsOfTheirKindsGiveAValidResultOrNone)
{
    const bool remembers = isOneOf("Accum Apply SlidingWindow");
    const std::string usual = remembers ? "" : outcome(good);
    Values firsts{good[0]};
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const auto& kinds = ports[i]->getTypes();
        Values bads;
        for (const DataType kind : kinds.empty() ? Filters::Kinds{Color, DataType::Array} : kinds)
            for (const auto& bad : extremes(kind, run))
                bads.push_back(bad);
        for (const auto& bad : bads)
            for (const auto& first : firsts) {
                Values inputs = with(0, first);
                inputs[i] = bad;
                ++tried;
                const std::string former = outcome(inputs), between = outcome(good), now = outcome(inputs);
                EXPECT_TRUE(remembers || (between == usual && now == former)) << shown(inputs);
                for (const char* user : {"process", "___@LAMBDA@___"})
                    run.memory.removeProcess(StringHash(user));
            }
        if (i == 0 && (!kinds.empty() || name == "Draw")) // the others do not look into what comes
            firsts.insert(firsts.end(), bads.begin(), bads.end());
    }
}

INSTANTIATE_TEST_SUITE_P(AllFilters, BadInputs, testing::ValuesIn(ZR::Corvale::Corvale(0).getFilters()),
                         [](const auto& info) { return info.param; });

} // namespace
