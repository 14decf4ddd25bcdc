#include "rk/os.h"
#include "rk/unicode.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <array>
#include <ctime>
#include <thread>

namespace {

TEST(Os, SetClockIsReadUntilItIsRemoved)
{
    rk::os::setClock([](timeval* now) {
        *now = {12, 34};
        return 7;
    });
    timeval now{};
    EXPECT_EQ(rk::os::gettimeofday(&now), 7);
    EXPECT_EQ(now.tv_sec, 12);
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

} // namespace
