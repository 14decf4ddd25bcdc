#include "corvale/engine/corvale.h"
#include "filters/filterrunner.h"
#include "rk/path.h"

#include <boost/filesystem.hpp>
#include <boost/property_tree/ptree.hpp>

#include <climits>
#include <fstream>

using namespace support;
namespace fs = boost::filesystem;
namespace tree = boost::property_tree;

namespace {

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

    bool create(const std::string& size, const std::string& count, const std::string& descriptors,
                const std::string& type = "knn")
    {
        std::ofstream((folder / "halvex/vision/fgs/base.xml").string())
            << "<data><properties><type>" << type << "</type><size>" << size << "</size><count>" << count
            << "</count></properties><descriptors>" << descriptors << "</descriptors></data>";
        return engine.createClassificationFilter("c", ZR::Corvale::KNN, "base.xml") &&
               engine.createProcess("p", "c", {{"in", "query"}, {"k", "k"}}, {{"out", "out"}}, {}, {}, 3,
                                    1e9f);
    }
    // The label as a text.
    std::string classify(const Values& query, const boost::shared_ptr<Data>& k = {})
    {
        engine.setData("query", value(query));
        engine.setData("k", k);
        const auto label = engine.getData("p:out");
        return label ? label->toString() : "none";
    }

    LogCapture log;
    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
    ZR::Corvale::Corvale engine{0};
};

TEST_F(Classification, FindsAndVotesByTheRulesAndGivesNothingForAnotherLength)
{
    const auto zero = value(0), farAway = value(-1e30f), four = value(4u);
    std::string descriptors =
        "<a>7 0 1</a><!-- 1 --><a>3 1 0</a><b>5 4 4</b><b>9 5 5 more</b><b>4 1e30 0</b>";
    for (int i = 10; i < 70; ++i)
        descriptors += "<c>" + std::to_string(i) + "\n1e2 " + std::to_string(i) + ".5</c>";
    ASSERT_TRUE(create("2", "65", descriptors));
    for (int i = 10; i < 70; ++i)
        EXPECT_EQ(classify({value(100.0f), value(i + 0.5f)}), std::to_string(i));
    EXPECT_EQ(classify({zero, zero}, value(-1)), "7");
    EXPECT_EQ(classify({zero, zero}, value(2)), "3");
    EXPECT_EQ(classify({four, four}, value(3)), "3");                 // 9 has taken the slot of 7
    EXPECT_EQ(classify({value("0"), value(true)}, value(2.0f)), "7"); // no numbers: 0, 0 and 1
    EXPECT_EQ(classify({zero, zero}, value(INT_MAX)), "0");           // empty slots: 4 is too far away
    EXPECT_EQ(classify({farAway, zero}), "7");                        // nothing is in reach
    EXPECT_EQ(classify({farAway, zero}, value(2)), "0");
    EXPECT_EQ(classify({zero}), "none");
    EXPECT_EQ(log.count(rk::log::Error), 0u);
    EXPECT_EQ(classify({zero, nullptr}), "none");
    EXPECT_EQ(log.messages(rk::log::Error).at(0), " [Invalid Input] -> KNNClassification -> ...");
}

TEST_F(Classification, OfBadDatabasesThrowsAndLeavesNoFilter)
{
    for (const char* descriptor : {"<d>1 1</d>", "<d>1 1 one</d>", "<d/>"})
        for (const char* size : {"2", "-1", "4294967295", "many"})
            EXPECT_THROW(create(size, "1", descriptor), tree::ptree_bad_data);
    for (const char* count : {"0", "2", "-1"})
        EXPECT_THROW(create("1", count, "<d>1 1</d>"), tree::ptree_bad_data);
    EXPECT_THROW(create("0", "0", "<d>"), tree::ptree_error);
    for (const char* level : {"<a>", "<a b='/>'>", "<a\">", "<a><!-- </a> -->", "<a><![CDATA[</a>]]>",
                              "<a><?b </a>?>", "<a><!DOCTYPE [> </a> ]>", "<a><!b [><c d=\">\"/>"}) {
        std::string deep;
        for (int i = 0; i < 100000; ++i)
            deep += level;
        EXPECT_THROW(create("1", "1", deep), tree::ptree_bad_data) << level;
    }
    EXPECT_TRUE(create("1", "1", "<d a='>'>1 <!-- <a><a> -->2<b/></d>"));
    engine.deleteFilter("c");
    EXPECT_FALSE(engine.isFilter("c"));
    EXPECT_TRUE(create("many", "", "", "another"));
    EXPECT_EQ(classify({}), "none");
    EXPECT_EQ(log.count(rk::log::Error), 0u);
}

} // namespace
