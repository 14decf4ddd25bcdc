#include "rk/os.h"
#include "rk/path.h"
#include "rk/unicode.h"

#include <boost/filesystem.hpp>
#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <ctime>
#include <fstream>
#include <thread>

namespace {

TEST(Os, SetClockIsReadUntilItIsRemoved)
{
    rk::os::setClock([](timeval* now) { return *now = {12, 34}, 7; });
    timeval now{};
    EXPECT_EQ(rk::os::gettimeofday(&now), 7);
    EXPECT_EQ(now.tv_usec, 34);
    rk::os::setClock(nullptr);
    const std::time_t before = std::time(nullptr);
    EXPECT_EQ(rk::os::gettimeofday(&now), 0);
    EXPECT_GE(now.tv_sec + 1, before);
}

TEST(Os, LongThreadNamesAreCutNotRefused)
{
    std::array<char, 32> name{};
    std::thread([&name] {
        rk::os::setCurrentThreadName("CorWrk_a process with a long name");
        pthread_getname_np(pthread_self(), name.data(), name.size());
    }).join();
    EXPECT_STREQ(name.data(), "CorWrk_a proces");
}

TEST(Unicode, FacetGoesFromUtf8AndBack)
{
    using boost::filesystem::path;
    const std::string utf8 = "a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80";
    const std::wstring wide = L"a\u00e9\u20ac\U0001f600";
    EXPECT_EQ(path(wide, rk::unicodeFacet()).string(), utf8);
    EXPECT_EQ(path(utf8).wstring(rk::unicodeFacet()), wide);
    EXPECT_THROW(path("overlong \xc0\x80").wstring(rk::unicodeFacet()), boost::system::system_error);
}

TEST(Path, MoreImportantDirectoriesHideOthers)
{
    namespace fs = boost::filesystem;
    const fs::path root = fs::temp_directory_path() / fs::unique_path("rkpath-%%%%%%%%");
    const std::string top = root.string() + '/';
    setenv("XDG_DATA_HOME", (top + "home").c_str(), 1);
    setenv("XDG_DATA_DIRS", ("relative:" + top + "one:" + top + "two").c_str(), 1);
    const auto found = [] { return rk::path::findData("some/app", "file.xml"); };
    EXPECT_EQ(found(), "");
    for (const std::string directory : {"two", "one", "home", "added2", "added1"}) {
        if (directory == "home") // which still wins, since nothing lies in these yet
            for (const char* added : {"added1", "added2"})
                rk::path::addDataPath(top + added);
        const fs::path file = root / directory / "some/app" / "file.xml";
        fs::create_directories(file.parent_path());
        std::ofstream(file.string()) << "x";
        EXPECT_EQ(found(), file);
        EXPECT_EQ(rk::path::findData("other", file.string()), file) << "absolute, so taken as it is";
        EXPECT_EQ(rk::path::findData("other", file.string() + "x"), "");
    }
    EXPECT_EQ(rk::path::findData("some/app", ""), "");
    fs::remove_all(root);
}

} // namespace
