#include "rk/log.h"

#include "support/logcapture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using rk::log::Record;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

void say(const std::string& message)
{
    rk::log::log(rk::log::Error, "test", message, nullptr, nullptr, 0);
}

TEST(Log, ObserverGetsEveryLevelWithItsPlace)
{
    const support::LogCapture log;
    for (int level = rk::log::Fatal; level <= rk::log::Debug; ++level)
        RK_LOG(level, "test  ") << "line " << level;

    EXPECT_EQ(log.count(), 6u);
    EXPECT_THAT(log.messages(rk::log::Verbose, "test"), ElementsAre("line 5"));
    const Record first = log.records().front();
    EXPECT_EQ(first.category, "test  ");
    EXPECT_THAT(first.file, HasSubstr("test_log.cpp"));
    EXPECT_EQ(first.function, "TestBody");
    EXPECT_GT(first.line, 0);
}

TEST(Log, TerminalShowsCategoryAndTextUpToItsLevel)
{
    const int former = rk::log::setLevel(rk::log::Warning);
    testing::internal::CaptureStderr();
    RK_LOG(rk::log::Warning, "some.category") << "shown {}";
    RK_LOG(rk::log::Info, "some.category") << "hidden";
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(rk::log::setLevel(former), rk::log::Warning);

    EXPECT_THAT(text, testing::MatchesRegex(".*warning +some.category +shown \\{\\}\n"));
    EXPECT_THAT(text, Not(HasSubstr("hidden")));
}

// An observer that speaks, throws or replaces itself must not block or end the one who logs.
class LogObserver : public testing::Test
{
protected:
    ~LogObserver() override { rk::log::setHandler(nullptr); }
    const support::LogCapture silence;
};

TEST_F(LogObserver, IsHeardAgainAfterItSpokeAndThrew)
{
    int calls = 0;
    rk::log::setHandler([&calls](const Record&) {
        ++calls;
        say("from the observer");
        throw std::runtime_error("observer");
    });
    say("one");
    say("two");
    EXPECT_EQ(calls, 2);
}

TEST_F(LogObserver, ReplacesItselfWhileItIsCalled)
{
    int second = 0;
    rk::log::setHandler(
        [&second](const Record&) { rk::log::setHandler([&second](const Record&) { ++second; }); });
    say("one");
    say("two");
    EXPECT_EQ(second, 1);
}

TEST_F(LogObserver, IsNotUnderWayOnceItWasReplaced)
{
    std::atomic<bool> done{false};
    std::thread speaker([&done] {
        while (!done)
            say("line");
    });
    for (int i = 0; i < 50; ++i) {
        auto alive = std::make_unique<std::atomic<int>>(0);
        rk::log::setHandler([counter = alive.get()](const Record&) { ++*counter; });
        while (*alive == 0)
            std::this_thread::yield();
        EXPECT_TRUE(rk::log::setHandler(nullptr));
    } // an observer that still ran would now touch freed memory
    done = true;
    speaker.join();
}

} // namespace
