#include "corvale/data/datalambda.h"
#include "engine/enginetest.h"
#include "rk/path.h"

#include <boost/filesystem.hpp>

#include <fstream>

using namespace support;

namespace {

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
               joined(engine.getProcesses()) + "/" + joined(engine.getScheduledJobs());
    }

    // The call gives the result of a failure and one line of the engine, under the operation's name.
    template <typename Result>
    void refused(const std::string& call, const Result& result, const std::string& line,
                 int level = rk::log::Error)
    {
        EXPECT_EQ(result, Result()) << line;
        const std::vector<std::string> lines = log.messages(0, "corvale.private");
        EXPECT_THAT(lines, testing::ElementsAre(line));
        EXPECT_EQ(log.records().back().level, level) << line;
        EXPECT_EQ(log.records().back().function, call.substr(0, call.find('('))) << line;
        EXPECT_EQ(tables(), before) << line;
        log.clear();
    }

    std::string before;
    const boost::function<void(Value)> callback = [](Value) {};
};

#define REFUSED(call, line) refused(#call, engine.call, line)

} // namespace

// One row a line, however long: the texts are the point.
// clang-format off

TEST_F(FailureTest, OfDataAndEvents)
{
    REFUSED(getData("p"), R"(getData("p"): the sink is not correctly formated ("process:sink" expected).)");
    REFUSED(getData(" x : y:z"), R"(getData(" x : y:z"): the process "x" does not exist.)");
    REFUSED(getLastData("p"), R"(getLastData("p"): the sink is not correctly formated ("process:sink" expected).)");
    REFUSED(getLastData("x:out"), R"(getLastData("x:out"): the process "x" does not exist.)");
    REFUSED(setData("x", value(1)), R"(Can't set data for source "x": source unknown.)");
    REFUSED(setData("a", value(1)), R"(Can't set data for source "a": source unknown.)");
    REFUSED(setData("x:s", value(1)), R"(Can't set data for source "x:s": process "x" not found.)");
    REFUSED(getSourceData("x"), R"(Can't get data from source "x": source unknown.)");
    REFUSED(getSourceData("x:s"), R"(Can't get data from source "x:s": process "x" unknown.)");
    REFUSED(getSourceData("p:x"), R"(Can't get data from source "p:x": source unknown.)");
    REFUSED(createEvent("p", callback), R"(createEvent("p", callback): invalid sink format expected "process:sink".)");
    REFUSED(createEvent("x:out", callback), R"(createEvent("x:out", callback): unknown process "x".)");
    REFUSED(createEvent("p:x", callback), R"(createEvent("p:x", callback): unknown sink "x".)");
    EXPECT_THROW(engine.setData("p:missing", value(1)), std::out_of_range);
    EXPECT_TRUE(engine.setData("p:s", value(7))) << "the engine stays usable";
    EXPECT_EQ(text(engine.getData("p:out")), "7");
}

TEST_F(FailureTest, OfSources)
{
    REFUSED(createSource("s"), R"(createSource("s"): source already exists.)");
    REFUSED(createSource("a"), R"(createSource("a"): source already exists.)");
    REFUSED(createSourceAlias("b", "a"), R"(Can't create alias "b": source "a" not found.)");
    REFUSED(createSourceAlias("s", "x"), R"(Can't create alias "s": source "x" not found.)");
    REFUSED(createSourceAlias("s", "s"), R"(Can't create alias "s": source or alias is already present.)");
    REFUSED(createSourceAlias("a", "s"), R"(Can't create alias "a": source or alias is already present.)");
    REFUSED(renameSourceAlias("x", "s"), R"(Can't rename alias "x": "s" is already in use.)");
    REFUSED(renameSourceAlias("a", "a"), R"(Can't rename alias "a": "a" is already in use.)");
    REFUSED(renameSourceAlias("s", "y"), R"(Can't rename alias "s": alias unknown.)");
    REFUSED(retargetSourceAlias("x", "s"), R"(Can't retarget alias "x" to  "s": alias or target unknown)");
    REFUSED(retargetSourceAlias("a", "a"), R"(Can't retarget alias "a" to  "a": alias or target unknown)");
    REFUSED(deleteSource("x"), R"(Can't delete source "x": source unknown.)");
    REFUSED(createSourceFromProcessSink("a", "x"), R"(createSourceFromProcessSink("a"): source already exists.)");
    REFUSED(createSourceFromProcessSink("n", "p"), R"(createSourceFromProcessSink("n", "p"): impossible to find the specified process sink. Please make sure to write the sink name as "process_name:sink_name".)");
    REFUSED(createSourceFromProcessSink("n", "x:y"), R"(createSourceFromProcessSink("n", "x:y"): impossible to find the specified process "x".)");
    REFUSED(createSourceFromProcessSink("n", "p:x"), R"(createSourceFromProcessSink("n", "p:x"): impossible to find the specified sink "x" in the process "p".)");
}

TEST_F(FailureTest, OfProcessesByName)
{
    REFUSED(isProcessEnable("x"), R"(Can't test if process "x" is enable: process unknown.)");
    REFUSED(isProcessZombie("x"), R"(Can't test if process "x" is zombie: process unknown.)");
    REFUSED(resetProcess("x"), R"(Process "x" does not exist.)");
    REFUSED(renameProcess("x", "p"), R"(Can't rename the process "x": process unknown.)");
    REFUSED(deleteProcess("x"), R"(Can't delete process "x": process unknown.)");
    REFUSED(enableProcess("x"), R"(Can't enable process "x": process unknown.)");
    REFUSED(disableProcess("x"), R"(Can't disable process "x": process unknown.)");
    REFUSED(getProcessPriority("x"), R"(Can't get priority of the process "x": process unknown.)");
    REFUSED(setProcessPriority("x", 1), R"(Can't set priority for the process "x": process unknown.)");
    REFUSED(getProcessFrequency("x"), R"(Can't get frequency of the process "x": process unknown.)");
    REFUSED(setProcessFrequency("x", 1), R"(Can't set frequency for the process "x": process unknown.)");
    REFUSED(getProcessDescription("x"), R"(Can't get description of the process "x": process unknown)");
    REFUSED(setProcessDescription("x", ""), R"(Can't set description for the process "x": process unknown.)");
    REFUSED(getProcessSources("x"), R"(Can't get sources of the process "x": process unknown.)");
    REFUSED(getProcessSinks("x"), R"(Can't get sinks of the process "x": process unknown.)");
    REFUSED(getProcessAggregatedSinks("x"), R"(Can't get aggregated sinks of the process "x": process unknown.)");
}

TEST_F(FailureTest, OfFilters)
{
    REFUSED(createLambda("x"), R"(createLambda("x"): The filter "x" has not been found.)");
    REFUSED(getFilterDescription("x"), R"(getFilterDescription("x"): filter not found.)");
    REFUSED(getFilterInputs("x"), R"(getFilterInputs("x"): filter not found.)");
    REFUSED(getFilterOutputs("x"), R"(getFilterOutputs("x"): filter not found.)");
    EXPECT_FALSE(engine.deleteFilter("x"));
    EXPECT_EQ(engine.dumpFilter("x", 0), "");
    EXPECT_EQ(log.count(), 0u) << "these two refuse without a word";

    namespace fs = boost::filesystem;
    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
    const std::string base = (folder / "halvex/vision/fgs/base.xml").string();
    fs::create_directories(folder / "halvex/vision/fgs");
    std::ofstream(base) << "<none/>";
    rk::path::addDataPath(folder.string());
    REFUSED(createClassificationFilter("Add", KNN, "x.xml"), R"(createClassificationFilter("Add", type, "x.xml"): File not found.)");
    REFUSED(createClassificationFilter("Add", KNN, "base.xml"), R"(createClassificationFilter("Add", type, ")" + base + R"("): A filter with the name "Add" already exists.)");
    REFUSED(createClassificationFilter("k", ClassificationType(1), "base.xml"), R"(createClassificationFilter("k", type, "base.xml"): Invalid classification type.)");
    fs::remove_all(folder);
}

TEST_F(FailureTest, OfCompositeFilters)
{
    const Corvale::PairList nodes = {{"Identity", "i"}, {"Dispatch", "d"}, {"Luminance", "l"}};
    const auto line = [](const std::string& rest) { return R"(createFilter("c", filters, links): )" + rest; };
    const auto link = [&](const Corvale::Pair& from, const Corvale::Pair& to, const std::string& rest) {
        refused("createFilter", engine.createFilter("c", nodes, {{from, to}}, {}, {}), line(rest));
    };
    const auto input = [&](const std::string& node, const std::string& port, const std::string& rest) {
        refused("createFilter", engine.createFilter("c", nodes, {}, {{{node, port}, "x"}}, {}), line(rest));
    };
    refused("createFilter", engine.createFilter("Add", {}, {}, {}, {}), R"(createFilter("Add", filters, links): A filter with the name "Add" already exists.)");
    refused("createFilter", engine.createFilter("c", {{"Nope", "n"}}, {}, {}, {}), line(R"(The filter "n" is declared as "Nope" but "Nope" has never been declared.)"));
    link({"x", "?"}, {"y", "?"}, R"(The filter "x" is not declared.)");
    link({"i", "?"}, {"y", "?"}, R"(The filter "y" is not declared.)");
    link({"i", "?"}, {"d", "?"}, R"(The port "?" is not declared in "i".)");
    link({"d", ""}, {"i", "in"}, R"(The port "" is not declared in "d".)");
    link({"i", "out"}, {"d", "?"}, R"(The port "?" is not declared in "d")");
    link({"l", "out"}, {"d", "state"}, R"(The port "d:state" has no common type with "l:out".)");
    input("x", "in", R"(Invalid exported input: "x:in<=x".)");
    input("i", "?[1]", R"(Invalid exported input: "i:?[1]<=x".)");
    input("i", "in[1]2", R"(Invalid default value declaration "i:in[1]2".)");
    input("i", "in[word]", R"(Invalid default value: "word".)");
    refused("createFilter", engine.createFilter("c", nodes, {}, {{{"i", "in"}, "x"}}, {{{"i", "?"}, "y"}}), line(R"(Invalid exported output: "i:i=>y".)"));
}

TEST_F(FailureTest, OfProcessesUnderConstruction)
{
    using List = Corvale::PairList;
    const auto fails = [&](const std::string& line, const List& inputs, const List& outputs, const List& events, const List& declarations, int level) {
        refused("createProcess", make(engine, "n", "Duplicate", inputs, outputs, events, declarations), line, level);
    };
    const auto lists = [](const std::string& rest) { return R"(createProcess("n", "Duplicate", inputs, outputs): )" + rest; };
    const auto dots = [](const std::string& rest) { return R"(createProcess("n", "Duplicate", ...): )" + rest; };
    const auto input = [&](const std::string& port, const std::string& source, const std::string& line) { fails(line, {{port, source}}, {}, {}, {}, rk::log::Error); };
    const auto declaration = [&](const std::string& keyword, const std::string& text, const std::string& line) { fails(line, {}, {}, {}, {{keyword, text}}, rk::log::Error); };
    const auto event = [&](const std::string& first, const std::string& second, const std::string& line, int level) { fails(line, {}, {{"left", "o"}, {"left", "g"}, {"right", "g"}}, {{first, second}}, {}, level); };

    declaration("sink", "x", R"(Can't create process: invalid keyword "sink".)");
    declaration("pulse", "x[1]2", dots(R"(Invalid default value declaration: "pulse x[1]2".)"));
    declaration("pulse", "x[word]", dots("Invalid default value: word"));
    refused("createProcess", make(engine, "n", "Nope", {}, {}), R"(createProcess("n", "Nope", inputs, outputs): the filter "Nope" is not present in the filter library.)");
    input("?", "s", lists(R"(impossible to find the specified input "?".)"));
    input("in", "x", dots(R"(impossible to find the specified source "x".)"));
    input("in", "this:x", lists(R"(impossible to find the local source "x" in the current process.)"));
    input("in", "x:out", dots(R"(impossible to find the specified process "x".)"));
    input("in", "p:x", lists(R"(impossible to find the specified sink "x" in the process "p".)"));
    fails(lists("impossible to find the specified output \"?\".\n  Please verify the output list."), {}, {{"?", "o"}}, {}, {}, rk::log::Warning);
    event("x", "p", lists(R"(impossible to find the specified sink "x".)"), rk::log::Warning);
    event("g", "p", lists(R"(impossible to find the specified sink "g".)"), rk::log::Warning);
    event("o", "x", lists(R"(impossible to find the specified process "x".)"), rk::log::Warning);
    event("p:out", "n", lists(R"("self" expected instead of "n".)"), rk::log::Error);
    event("x:out", "self", lists(R"(The process "x" is not declared.)"), rk::log::Error);
    event("q:g", "self", lists(R"(The sink "g" is not declared in "q".)"), rk::log::Error);
}
// clang-format on
