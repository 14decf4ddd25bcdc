#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "support/logcapture.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/filesystem.hpp>
#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>

#include <fstream>

using namespace ZR::Corvale;
using testing::ElementsAre;

namespace {

struct ProgramTest : testing::Test
{
    support::LogCapture log;
    Corvale engine{0};
};

} // namespace

TEST_F(ProgramTest, PiecesAreHeadersAndBodiesInTurn)
{
    const std::pair<const char*, const char*> programsAndSources[] = {
        {"", ""},
        {"# source a { 1 }", ""},
        {"source a", ""},
        {"source\n a { 1 # }\n } source b { } source c {\"}\"}", "abc"},
        {"source\ta { 1 } source b { 2 }", "b"},
        {"frobnicate x { 1 } source a { 2 }", "a"},
        {"source a { 1 }; source b { 2 } source c { 3 }", "ac"},
        {"import files { a } source b { 1 }", "b"},
        {"source a { 1 } source b { 2 } delete source { a } delete sources { b }", "b"}};
    for (const auto& [program, sources] : programsAndSources) {
        Corvale fresh(0);
        EXPECT_TRUE(fresh.loadProgram(program)) << program;
        EXPECT_EQ(boost::algorithm::join(fresh.getSources(), ""), sources) << program;
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ProgramTest, ASourceTakesTheFirstKindOfValueThatFits)
{
    EXPECT_TRUE(
        engine.loadProgram(R"(source a { true } source b { -12 } source c { 1.5 } source d { infinity }
        source e { "null" } source f { "a;\"}" } source g { Add } source h { } source i { null })"));
    std::string types;
    for (const std::string& name : engine.getSources())
        if (const boost::shared_ptr<Data> data = engine.getSourceData(name))
            types += name + Data::getTypeName(data->getType()) + " ";
    EXPECT_EQ(types, "aBoolean bInteger cFloat dFloat eString fString gLambda ");
    EXPECT_EQ(std::string(*engine.getSourceData("f")), "a;\"}");
}

// A program and its line in turn. Arrows and colons are found in quotes too.
TEST_F(ProgramTest, EveryRefusalHasItsLineAndEndsTheProgram)
{
    std::ifstream table(REFUSALS);
    for (std::string program, line; std::getline(table, program) && std::getline(table, line); log.clear()) {
        EXPECT_FALSE(engine.loadProgram(program + " source last { 1 }")) << program;
        EXPECT_THAT(log.messages(), ElementsAre(line));
    }
    EXPECT_THAT(engine.getSources(), ElementsAre("a")) << "by a row of the table";
}

TEST_F(ProgramTest, LongAndDeepTextsNeitherRecurseNorGrowQuadratic)
{
    std::string deep(3000000, '('), chain = "filter f { a";
    for (int i = 0; i < 300000; ++i)
        chain += " -> b";
    for (int length : {1000, 6000}) { // the longer one could fill the stack
        std::string row = "filter f { Identity n0; n0 <= in;";
        for (int i = 1; i < length; ++i)
            row += "Identity n" + std::to_string(i) + "; n" + std::to_string(i - 1) + " -> n" +
                   std::to_string(i) + ";";
        row += "n" + std::to_string(length - 1) + " => out }";
        EXPECT_EQ(engine.loadProgram(row + "process p(f) { <= 7; => out } delete filter { f }"),
                  length == 1000);
        EXPECT_EQ(int(*engine.getData("p:out")), 7);
    }
    EXPECT_EQ(log.messages(rk::log::Error).back(),
              "createFilter(\"f\", filters, links): The filter is more than 5000 nodes deep.");
    EXPECT_TRUE(
        engine.loadProgram(R"(filter Self { Identity i; Append list; Curry bind; Append one; Apply call;
        i -> bind:fun; i -> list:item; list -> bind:param; bind -> call:fun; one -> call:param;
        i <= x; one:item[1] <= y; call => out } process endless(Self) { x <= Self; => out })"));
    boost::thread::attributes small; // each allocation on the way costs by the depth under a sanitizer
    small.set_stack_size(1 << 19);
    boost::thread(small, [&] { EXPECT_FALSE(engine.getData("endless:out")); }).join();
    EXPECT_EQ(log.messages(rk::log::Error).back(), "apply(): too many lambdas call one another.");
    EXPECT_TRUE(engine.loadProgram(std::string(3000000, '{')));
    EXPECT_FALSE(engine.loadProgram("process p" + deep + "{ }"));
    EXPECT_FALSE(engine.loadProgram(chain + "}"));
}

TEST_F(ProgramTest, ImportsAreFoundBesideTheImportingFile)
{
    namespace fs = boost::filesystem;
    const fs::path root = fs::temp_directory_path() / fs::unique_path("corvale %%%%-%%%% \xc3\xa9");
    fs::create_directories(root / "parts");
    const std::string absolute = (root / "parts/two.txt").string();
    std::ofstream((root / "main.fgs").string()) << "import file { parts/one.fgs } source main { 1 }";
    std::ofstream((root / "parts/one.fgs").string()) << "source one { 1 } import file { " << absolute << " }";
    std::ofstream(absolute) << "source two { 2 } source main { 2 } source main { 3 }";
    EXPECT_FALSE(engine.loadProgramFromFile((root / "main.fgs").string()));
    EXPECT_THAT(engine.getSources(), ElementsAre("main", "one", "two"));
    fs::remove_all(root);
}
