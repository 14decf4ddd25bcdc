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

TEST(Os, FopenGivesNullForWhatIsMissing)
{
    EXPECT_EQ(rk::os::fopen("/no/such/file", "r"), nullptr);
}

TEST(Unicode, FacetGoesFromUtf8AndBack)
{
    const std::string utf8 = "a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80";
    const std::wstring wide = L"a\u00e9\u20ac\U0001f600";
    const auto& facet = rk::unicodeFacet();

    std::mbstate_t state{};
    std::array<wchar_t, 8> in{};
    const char* nextByte = nullptr;
    wchar_t* endWide = nullptr;
    ASSERT_EQ(facet.in(state, utf8.data(), utf8.data() + utf8.size(), nextByte, in.data(),
                       in.data() + in.size(), endWide),
              std::codecvt_base::ok);
    EXPECT_EQ(std::wstring(in.data(), endWide), wide);

    std::array<char, 16> out{};
    const wchar_t* nextWide = nullptr;
    char* endByte = nullptr;
    ASSERT_EQ(facet.out(state, wide.data(), wide.data() + wide.size(), nextWide, out.data(),
                        out.data() + out.size(), endByte),
              std::codecvt_base::ok);
    EXPECT_EQ(std::string(out.data(), endByte), utf8);

    const char overlong[] = "\xc0\x80";
    EXPECT_EQ(facet.in(state, overlong, overlong + 2, nextByte, in.data(), in.data() + in.size(), endWide),
              std::codecvt_base::error);
}

} // namespace
