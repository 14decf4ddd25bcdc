#include "corvale/data/datalambda.h"
#include "engine/enginetest.h"
#include "rk/path.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem.hpp>

#include <fstream>
#include <tuple>

using namespace support;

namespace {

namespace fs = boost::filesystem;
using Pair = Corvale::Pair;

// A source, an alias, a process with a sink and one with an aggregation: no refusal changes the tables.
struct FailureTest : EngineTest
{
    FailureTest()
    {
        engine.createSourceAlias("a", "s");
        pass(engine, "p", "s");
        make(engine, "q", "Duplicate", {{"in", "s"}}, {{"left", "g"}, {"right", "g"}});
        before = tables();
        log.clear();
    }
    std::string tables() const
    {
        return joined(engine.getFilters()) + "/" + joined(engine.getSources()) + "/" +
               joined(engine.getProcesses()) + "/" + jobs();
    }

    // Each call gives the result of a failure and one line of the engine, under the operation's name. The
    // lines stand in a file, in the order of the calls; % in it is the folder given here.
    template <typename Results>
    void refused(const std::string& file, const Results& results, const std::string& folder = "%")
    {
        EXPECT_TRUE(results == Results());
        EXPECT_EQ(tables(), before);
        std::string lines;
        for (const rk::log::Record& line : log.records())
            if (line.category.find("corvale.private") == 0)
                lines += line.function + (line.level == rk::log::Warning ? " (warning): " : ": ") +
                         line.message + "\n";
        std::ifstream stream(FAILURES + file);
        std::string expected(std::istreambuf_iterator<char>(stream), {});
        EXPECT_EQ(lines, boost::algorithm::replace_all_copy(expected, "%", folder));
        log.clear();
    }

    std::string before;
};

} // namespace

TEST_F(FailureTest, OfDataAndEvents)
{
    refused("data.txt", std::tuple{engine.getData("p"), engine.getData(" x : y:z"), engine.getLastData("p"),
                                   engine.getLastData("x:out"), engine.setData("x", value(1)),
                                   engine.setData("a", value(1)), engine.setData("x:s", value(1)),
                                   engine.getSourceData("x"), engine.getSourceData("x:s"),
                                   engine.getSourceData("p:x"), engine.createEvent("p", {}),
                                   engine.createEvent("x:out", {}), engine.createEvent("p:x", {})});
    EXPECT_THROW(engine.setData("p:missing", value(1)), std::out_of_range);
    EXPECT_TRUE(engine.setData("p:s", value(7))) << "the engine stays usable";
    EXPECT_EQ(get("p:out"), "7");
}

TEST_F(FailureTest, OfFilters)
{
    EXPECT_FALSE(engine.deleteFilter("x"));
    EXPECT_EQ(engine.dumpFilter("x", 0), "");
    EXPECT_EQ(log.count(), 0u) << "these two refuse without a word";

    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
    fs::create_directories(folder / "halvex/vision/fgs");
    std::ofstream((folder / "halvex/vision/fgs/base.xml").string()) << "<none/>";
    rk::path::addDataPath(folder.string());
    refused("filters.txt",
            std::tuple{engine.createLambda("x"), engine.getFilterDescription("x"),
                       engine.getFilterInputs("x"), engine.getFilterOutputs("x"),
                       engine.createClassificationFilter("Add", KNN, "x.xml"),
                       engine.createClassificationFilter("Add", KNN, "base.xml"),
                       engine.createClassificationFilter("k", ClassificationType(1), "base.xml")},
            folder.string());
    fs::remove_all(folder);
}

TEST_F(FailureTest, OfCompositeFilters)
{
    const Corvale::PairList nodes = {{"Identity", "i"}, {"Dispatch", "d"}, {"Luminance", "l"}};
    const auto link = [&](Pair from, Pair to) {
        return engine.createFilter("c", nodes, {{from, to}}, {}, {});
    };
    const auto input = [&](Pair port) { return engine.createFilter("c", nodes, {}, {{port, "x"}}, {}); };
    refused("composites.txt",
            std::tuple{engine.createFilter("Add", {}, {}, {}, {}),
                       engine.createFilter("c", {{"Nope", "n"}}, {}, {}, {}), link({"x", "?"}, {"y", "?"}),
                       link({"i", "?"}, {"y", "?"}), link({"i", "?"}, {"d", "?"}),
                       link({"d", ""}, {"i", "in"}), link({"i", "out"}, {"d", "?"}),
                       link({"l", "out"}, {"d", "state"}), input({"x", "in"}), input({"i", "?[1]"}),
                       input({"i", "in[1]2"}), input({"i", "in[word]"}),
                       engine.createFilter("c", nodes, {}, {{{"i", "in"}, "x"}}, {{{"i", "?"}, "y"}})});
}

TEST_F(FailureTest, OfProcessesUnderConstruction)
{
    const auto declaration = [&](Pair pair) { return make(engine, "n", "Duplicate", {}, {}, {}, {pair}); };
    const auto input = [&](Pair pair) { return make(engine, "n", "Duplicate", {pair}, {}); };
    const auto event = [&](Pair pair) {
        return make(engine, "n", "Duplicate", {}, {{"left", "o"}, {"left", "g"}, {"right", "g"}}, {pair});
    };
    refused("construction.txt",
            std::tuple{declaration({"sink", "x"}), declaration({"pulse", "x[1]2"}),
                       declaration({"pulse", "x[word]"}), make(engine, "n", "Nope", {}, {}),
                       input({"?", "s"}), input({"in", "x"}), input({"in", "this:x"}), input({"in", "x:out"}),
                       input({"in", "p:x"}), make(engine, "n", "Duplicate", {}, {{"?", "o"}}),
                       event({"x", "p"}), event({"g", "p"}), event({"o", "x"}), event({"p:out", "n"}),
                       event({"x:out", "self"}), event({"q:g", "self"})});
}
