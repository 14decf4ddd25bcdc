#include "engine/enginetest.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem.hpp>

#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

namespace fs = boost::filesystem;

struct ProgramFileTest : EngineTest
{
    ProgramFileTest()
    {
        fs::create_directories(folder / "sub");
        engine.deleteSource("s");
    }
    ~ProgramFileTest() override { fs::remove_all(folder); }

    std::string write(const std::string& name, const std::string& program)
    {
        std::ofstream(path(name), std::ios::binary) << program;
        return path(name);
    }
    std::string path(const std::string& name) const { return (folder / name).string(); }

    // In `line`, @ stands for the path in quotes.
    void refused(const std::string& path, std::string line)
    {
        boost::algorithm::replace_all(line, "@", '"' + path + '"');
        log.clear();
        EXPECT_FALSE(engine.loadProgramFromFile(path)) << path;
        EXPECT_THAT(log.messages(rk::log::Error, "corvale.private"), ElementsAre(line));
        EXPECT_EQ(log.records().at(0).function, "loadProgramFromFile");
    }

    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
};

} // namespace

TEST_F(ProgramFileTest, WhatCannotBeReadIsRefused)
{
    ASSERT_EQ(mkfifo(path("pipe.fgs").c_str(), 0600), 0);
    refused(path("pipe.fgs"), R"(loadProgramFromFile("@"): "@" is not a regular file.)");
    const std::string closed = write("closed.fgs", "source x { 1 }");
    rlimit former{};
    getrlimit(RLIMIT_NOFILE, &former);
    const rlimit none{0, former.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    refused(closed, R"(loadProgramFromFile("@"): "unable to open @)");
    setrlimit(RLIMIT_NOFILE, &former);
    EXPECT_TRUE(engine.loadProgramFromFile(closed)) << "nothing is tried again";
    EXPECT_THAT(engine.getSources(), IsEmpty());
}

TEST_F(ProgramFileTest, ImportsResolveAgainstTheirFileAndMayGoInACircle)
{
    const std::string long_ =
        "source x # " + std::string(2000, '#') + "\n { \"" + std::string(1500, 'y') + "\" }";
    write("sub/one.FGS", "import file { two.TXT } source one { 1 }");
    write("sub/two.TXT", "import file { one.FGS } source two { 2 }" + long_);
    EXPECT_TRUE(
        engine.loadProgramFromFile(write("main.fgs", "import file { sub/one.FGS } source main { 0 }")));
    EXPECT_THAT(engine.getSources(), ElementsAre("main", "one", "two", "x"));
    EXPECT_EQ(text(engine.getSourceData("x")), std::string(1500, 'y'));
    EXPECT_TRUE(engine.loadProgramFromFile(write("empty.fgs", "")));
    EXPECT_TRUE(engine.loadProgramFromFile(
        write("zero.fgs", std::string("source z { 1 }\0 junk\n", 21) + "source w { 2 }")));
    EXPECT_EQ(joined(engine.getSources()), "main one two w x z") << "a zero byte ends its line";
    EXPECT_EQ(log.count(rk::log::Error), 0u);
}
