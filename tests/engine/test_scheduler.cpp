#include "engine/enginetest.h"
#include "support/fakeclock.h"

#include <boost/filesystem.hpp>
#include <boost/weak_ptr.hpp>

#include <atomic>
#include <iterator>
#include <mutex>

using namespace support;

namespace {

using SchedulerTest = EngineTest;

auto threads()
{
    using boost::filesystem::directory_iterator;
    return std::distance(directory_iterator("/proc/self/task"), directory_iterator());
}

} // namespace

TEST_F(SchedulerTest, TheLeastPriorityHasOneShareBesideTheOthers)
{
    for (unsigned int i = 1; i <= 8; ++i)
        make(engine, std::to_string(i), "Identity", {{"in", "1"}}, {{"out", "out"}}, {}, {}, i);
    EXPECT_EQ(jobs().size(), 2u * 255 - 1);
}

TEST_F(SchedulerTest, HasTwoWorkersByDefaultAndEndsThem)
{
    std::thread([] {}).join(); // a sanitizer adds a thread of its own with the first one
    const auto before = threads();
    const auto allEnded = [&] { return threads() == before; };
    {
        Corvale two;
        EXPECT_TRUE(two.stopScheduler() && two.stopScheduler());
        EXPECT_TRUE(comesTrue(allEnded));
        EXPECT_TRUE(two.startScheduler() && two.startScheduler()) << "twice";
        EXPECT_EQ(threads(), before + 2);
    }
    EXPECT_TRUE(comesTrue(allEnded));
}

// One worker takes from the back of a pass over a, b and c; what an event pushes comes first.
TEST_F(SchedulerTest, AnEventPutsItsProcessNext)
{
    std::mutex mutex;
    std::string order;
    Corvale one(1);
    one.stopScheduler();
    one.createFilter(boost::make_shared<FunctionFilter>("Note", [&](Value name) {
        const std::lock_guard<std::mutex> guard(mutex);
        order += text(name);
        return name;
    }));
    const auto note = [&](const std::string& name, const Corvale::PairList& events) {
        return make(one, name, "Note", {{"in", '"' + name + '"'}}, {{"out", "out"}}, events, {}, 3, 0.001f);
    };
    EXPECT_TRUE(note("b", {}) && note("d", {{"out", "b"}}) && note("a", {{"b:out", "self"}}) &&
                note("c", {}));
    one.startScheduler();
    EXPECT_TRUE(comesTrue([&] {
        const std::lock_guard<std::mutex> guard(mutex);
        return order.size() == 4;
    }));
    EXPECT_EQ(order, "dbac") << "d c b a without events";
}

// It takes a process shortly before its time, which a clock that stands still never lets come.
TEST_F(SchedulerTest, AWorkerThatWaitsForAProcessLooksAtOneThatIsReset)
{
    FakeClock clock;
    Corvale one(1);
    const auto computes = [&] { return comesTrue([&] { return one.getLastData("rare:out") != nullptr; }); };
    for (const auto& [name, frequency] : {std::pair("often", 1000.0f), {"rare", 0.001f}})
        make(one, name, "Identity", {{"in", "1"}}, {{"out", "out"}}, {}, {}, 3, frequency);
    EXPECT_TRUE(computes() && comesTrue([&] { return one.getLastData("often:out") != nullptr; }));
    clock.now += 980;
    int times = 0;
    while (times < 100 && one.resetProcess("rare") && computes())
        ++times;
    EXPECT_EQ(times, 100);
}

TEST_F(SchedulerTest, NoProcessComputesOnTwoThreadsAtOnce)
{
    std::atomic<int> inside{0};
    std::atomic<int> computed{0};
    std::atomic<bool> together{false};
    Corvale four(4);
    four.createSource("s");
    four.createFilter(boost::make_shared<FunctionFilter>("Enter", [&](Value in) {
        together = ++inside != 1 || together;
        std::this_thread::yield();
        --inside;
        ++computed;
        return in;
    }));
    pass(four, "p", "s", "Enter");
    pass(four, "q", "s");
    EXPECT_TRUE(comesTrue([&] {
        four.setData("s", value(1));
        four.getData("p:out");
        return computed > 500;
    }));
    EXPECT_FALSE(together);
    EXPECT_EQ(faults(), 0u);
}

// Whether it has been computed by a worker or not.
TEST_F(SchedulerTest, WhatIsDeletedWhileItRunsEnds)
{
    Corvale three(3);
    three.createSource("s");
    boost::weak_ptr<FunctionFilter> latest;
    const auto runs = [&](int content) {
        const auto filter = boost::make_shared<FunctionFilter>("Pass", [](Value in) { return in; });
        latest = filter;
        three.createFilter(filter);
        EXPECT_TRUE(pass(three, "p", "s", "Pass"));
        three.deleteFilter("Pass");
        three.setData("s", value(content));
        return content % 4 != 0 ||
               comesTrue([&] { return text(three.getLastData("p:out")) == std::to_string(content); });
    };
    for (int i = 0; i < 60; ++i) {
        EXPECT_TRUE(runs(i));
        EXPECT_TRUE(three.deleteProcess("p"));
        EXPECT_TRUE(comesTrue([&] { return latest.expired(); }));
    }
    EXPECT_TRUE(runs(60) && three.stopScheduler());
    three.setData("s", value(61));
    EXPECT_EQ(text(three.getLastData("p:out")), "60") << "nobody computes";
    EXPECT_TRUE(three.deleteProcess("p"));
    EXPECT_TRUE(latest.expired()) << "a stopped scheduler holds nothing";
}
