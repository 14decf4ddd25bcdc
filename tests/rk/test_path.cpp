#include "rk/path.h"

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

namespace fs = boost::filesystem;

class Path : public testing::Test
{
protected:
    Path() : root(fs::temp_directory_path() / fs::unique_path("rkpath-%%%%%%%%"))
    {
        setenv("XDG_DATA_HOME", (root / "home").c_str(), 1);
        setenv("XDG_DATA_DIRS",
               ("relative:" + (root / "one").string() + ':' + (root / "two").string()).c_str(), 1);
    }
    ~Path() override { fs::remove_all(root); }

    std::string make(const std::string& directory)
    {
        const fs::path file = root / directory / "some/app" / "file.xml";
        fs::create_directories(file.parent_path());
        std::ofstream(file.string()) << "x";
        return file.string();
    }

    const fs::path root;
};

TEST_F(Path, MoreImportantDirectoriesHideOthers)
{
    const auto found = [] { return rk::path::findData("some/app", "file.xml"); };
    EXPECT_EQ(found(), "");
    for (const char* directory : {"two", "one", "home"}) {
        const std::string file = make(directory);
        EXPECT_EQ(found(), file);
    }
    const std::string second = make("added2");
    rk::path::addDataPath((root / "added1").string());
    rk::path::addDataPath((root / "added2").string());
    EXPECT_EQ(found(), second);
    const std::string first = make("added1");
    EXPECT_EQ(found(), first);
}

TEST_F(Path, AbsoluteFilesAreTakenAsTheyAre)
{
    const std::string file = make("elsewhere");
    EXPECT_EQ(rk::path::findData("other", file), file);
    EXPECT_EQ(rk::path::findData("other", file + "x"), "");
    EXPECT_EQ(rk::path::findData("some/app", ""), "");
}

} // namespace
