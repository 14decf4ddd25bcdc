#include "rk/log.h"

#include "support/logcapture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using rk::log::Record;

void say(const std::string& message)
{
    RK_LOG(rk::log::Error, "test") << message;
}

TEST(Log, EveryLineReachesTheObserverAndTheSevereOnesTheTerminal)
{
    const support::LogCapture log;
    rk::log::setLevel(rk::log::Warning);
    testing::internal::CaptureStderr();
    for (int level = rk::log::Debug; level >= rk::log::Warning; --level)
        RK_LOG(level, "some.category ") << "line {} " << level;
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::MatchesRegex("[^\n]*warning +some.category +line \\{\\} 3\n"));
    EXPECT_EQ(rk::log::setLevel(0), rk::log::Warning);

    EXPECT_EQ(log.count(), 4u);
    const Record last = log.records().back();
    EXPECT_EQ(last.category + last.message, "some.category line {} 3");
    EXPECT_THAT(last.file, testing::HasSubstr("test_log.cpp"));
    EXPECT_TRUE(last.function == "TestBody" && last.line > 0);
}

// An observer that speaks, throws or replaces itself must not block or end the one who logs.
TEST(LogObserver, IsHeardAgainAfterItSpokeAndThrewUntilItReplacesItself)
{
    const support::LogCapture silence;
    int calls = 0, later = 0;
    rk::log::setHandler([&](const Record&) {
        say("from the observer");
        if (++calls == 2)
            rk::log::setHandler([&later](const Record&) { ++later; });
        throw std::runtime_error("observer");
    });
    for (int i = 0; i < 3; ++i)
        say("line");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(later, 1);
}

TEST(LogObserver, IsNotUnderWayOnceItWasReplaced)
{
    const support::LogCapture silence;
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
