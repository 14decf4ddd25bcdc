#include "corvale/engine/corvale.h"
#include "filters/filterrunner.h"
#include "rk/path.h"

#include <boost/filesystem.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <tuple>

using namespace support;
namespace fs = boost::filesystem;
namespace tree = boost::property_tree;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Descriptor
{
    int label;
    std::vector<float> elements;
};

struct Classification : testing::Test
{
    Classification()
    {
        fs::create_directories(folder / "halvex/vision/fgs");
        rk::path::addDataPath(folder.string());
        engine.createSource("query");
        engine.createSource("k");
    }
    ~Classification() override { fs::remove_all(folder); }

    bool create(const std::string& database)
    {
        std::ofstream(file.string()) << database;
        return engine.createClassificationFilter("classify", ZR::Corvale::KNN, "base.xml") &&
               engine.createProcess("p", "classify", {{"in", "query"}, {"k", "k"}}, {{"out", "label"}}, {},
                                    {}, 3, 1e9f);
    }
    bool create(const std::string& type, const std::string& size, const std::string& count,
                const std::string& descriptors)
    {
        return create("<data><properties><type>" + type + "</type><size>" + size + "</size><count>" + count +
                      "</count></properties><descriptors>" + descriptors + "</descriptors></data>");
    }
    void createFrom(const std::vector<Descriptor>& descriptors)
    {
        std::string text;
        for (const Descriptor& descriptor : descriptors) {
            const std::string tag = text.size() % 2 == 0 ? "even" : "odd"; // any
            text += "<" + tag + ">\n" + std::to_string(descriptor.label);
            for (const float element : descriptor.elements)
                text += " " + std::to_string(element);
            text += "</" + tag + ">";
        }
        ASSERT_TRUE(create("knn", std::to_string(descriptors[0].elements.size()),
                           std::to_string(descriptors.size()), text));
    }
    /// The label as a text, "none" if there is none.
    std::string classify(const Values& query, const boost::shared_ptr<Data>& k = {})
    {
        engine.setData("query", value(query));
        engine.setData("k", k);
        const auto label = engine.getData("p:label");
        return label ? label->toString() : "none";
    }

    LogCapture log;
    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
    const fs::path file = folder / "halvex/vision/fgs/base.xml";
    ZR::Corvale::Corvale engine{0};
};

int literalLabel(const std::vector<Descriptor>& descriptors, const std::vector<float>& query, int k)
{
    std::vector<std::pair<float, int>> slots(std::max(k, 1), {std::numeric_limits<float>::max(), 0});
    for (const Descriptor& descriptor : descriptors) {
        float distance = 0;
        for (std::size_t i = 0; i < query.size(); ++i)
            distance += (query[i] - descriptor.elements[i]) * (query[i] - descriptor.elements[i]);
        auto farthest = std::max_element(slots.begin(), slots.end(),
                                         [](const auto& l, const auto& r) { return l.first < r.first; });
        if (farthest->first > distance)
            *farthest = {distance, descriptor.label};
    }
    std::map<int, int> votes;
    for (const auto& slot : slots)
        ++votes[slot.second];
    int label = 0, most = 0;
    for (const auto& [candidate, count] : votes)
        if (count > most)
            std::tie(label, most) = std::tie(candidate, count);
    return label;
}

TEST_F(Classification, EqualsTheLiteralEvaluation)
{
    std::mt19937 generator(4711);
    std::vector<Descriptor> descriptors(77, {0, std::vector<float>(3)});
    for (Descriptor& descriptor : descriptors) {
        descriptor.label = int(generator() % 7) - 3;
        for (float& element : descriptor.elements)
            element = float(generator() % 5) * 0.5f; // many are equally far away
    }
    createFrom(descriptors);
    for (int round = 0; round < 400; ++round) {
        const int k = int(generator() % 100) - 5;
        std::vector<float> query;
        Values elements;
        for (int i = 0; i < 3; ++i) {
            query.push_back(float(generator() % 30) * 0.1f);
            elements.push_back(value(query.back()));
        }
        ASSERT_EQ(classify(elements, value(k)), std::to_string(literalLabel(descriptors, query, k))) << k;
    }
    const Values origin(3, value(0));
    EXPECT_EQ(classify(origin, value(std::numeric_limits<int>::max())), "0");
    EXPECT_EQ(classify(origin), std::to_string(literalLabel(descriptors, {0, 0, 0}, 1)));
    EXPECT_THAT(log.messages(rk::log::Error), IsEmpty());
}

TEST_F(Classification, VotesByTheRulesOfTies)
{
    createFrom({{7, {0, 1}}, {3, {1, 0}}, {5, {4, 4}}, {9, {5, 5}}, {5, {8, 8}}, {4, {1e30f, 0}}});
    EXPECT_EQ(classify({value(0), value(0)}), "7");
    EXPECT_EQ(classify({value(0), value(0)}, value(2)), "3");
    EXPECT_EQ(classify({value(4), value(4)}, value(3)), "3");  // 9 takes the slot of 7
    EXPECT_EQ(classify({value("a text"), value(true)}), "7");  // neither is a number: 0 and 0
    EXPECT_EQ(classify({value(0), value(0)}, value(11)), "0"); // six empty slots, the last is too far
    EXPECT_EQ(classify({value(-1e30f), value(-1e30f)}), "7");  // all are too far
    EXPECT_EQ(classify({value(-1e30f), value(-1e30f)}, value(2)), "0");
    EXPECT_THAT(log.messages(rk::log::Error), IsEmpty());
}

TEST_F(Classification, GivesNothingForAnotherLength)
{
    createFrom({{7, {0, 1}}});
    EXPECT_THAT(engine.getFilterInputs("classify"), ElementsAre("[Array] in", "optional [Integer] k"));
    EXPECT_THAT(engine.getFilterOutputs("classify"), ElementsAre("out"));
    EXPECT_THAT(engine.dumpFilter("classify", 0), testing::HasSubstr("\"KNNClassification"));
    EXPECT_EQ(classify({value(0)}), "none");
    EXPECT_EQ(classify({}), "none");
    EXPECT_THAT(log.messages(rk::log::Error), IsEmpty());
    EXPECT_EQ(classify({value(0), nullptr}), "none");
    EXPECT_THAT(log.messages(rk::log::Error), ElementsAre(" [Invalid Input] -> KNNClassification -> ..."));
}

TEST_F(Classification, OfAnotherTypeStaysEmpty)
{
    EXPECT_TRUE(create("<data><properties><type>svm</type></properties></data>"));
    EXPECT_EQ(classify({}), "none");
    EXPECT_EQ(classify({value(1)}), "none");
    EXPECT_THAT(log.messages(rk::log::Error), IsEmpty());
}

TEST_F(Classification, BadDatabasesThrowAndLeaveNoFilter)
{
    EXPECT_THROW(create("knn", "1", "2", "<d>1 1</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "1", "1", "<d>1 1</d><!-- a child too --><d>1 1</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "2", "1", "<d>1 1</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "1", "1", "<d>1 one</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "0", "1", "<d/>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "-1", "1", "<d>1 1</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "4294967295", "4294967295", ""), tree::ptree_bad_data);
    EXPECT_THROW(create("knn", "many", "0", ""), tree::ptree_bad_data);
    EXPECT_THROW(create("<data><properties><type>knn</type></properties></data>"), tree::ptree_bad_path);
    EXPECT_THROW(create("<data>"), tree::ptree_error);
    EXPECT_FALSE(engine.isFilter("classify"));
    EXPECT_THAT(log.messages(rk::log::Error), IsEmpty());
    EXPECT_TRUE(create("knn", "1", "1", "<d>1 1 and more</d>"));
    EXPECT_TRUE(engine.isFilter("classify"));
}

} // namespace
