#include "engine/enginetest.h"

#include <boost/filesystem.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
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

TEST_F(SchedulerTest, ASharePerPriorityIsSpreadEvenly)
{
    const auto schedule = [](const std::string& priorities) { // "a3 b1": a at 3, b at 1
        Corvale fresh(0);
        for (std::size_t i = 0; i < priorities.size(); i += 3)
            make(fresh, priorities.substr(i, 1), "Identity", {{"in", "1"}}, {{"out", "out"}}, {}, {},
                 static_cast<unsigned int>(priorities[i + 1] - '0'));
        return joined(fresh.getScheduledJobs());
    };
    // clang-format off
    const std::pair<const char*, const char*> rows[] = {
        {"", ""}, {"a0 b5", "b"}, {"a3", "a"}, {"a1 b1 c1", "a b c"}, {"p7 q8", "q p q"}, {"p3 q3 r4", "r p q r"},
        {"a3 b1 c2", "a c a b a c a"}, {"x1 y4", "y y y y x y y y y"}};
    // clang-format on
    for (const auto& [priorities, expected] : rows)
        EXPECT_EQ(schedule(priorities), expected) << priorities;
    EXPECT_EQ(schedule("a1 b2 c3 d4 e5 f6 g7 h8").size(), 2u * 255 - 1);
}

TEST_F(SchedulerTest, HasTwoWorkersByDefaultAndEndsThem)
{
    std::thread([] {}).join(); // a sanitizer adds a thread of its own with the first one
    const auto before = threads();
    const auto allEnded = [&] { return threads() == before; };
    {
        Corvale two;
        EXPECT_TRUE(two.startScheduler()) << "twice";
        EXPECT_EQ(threads(), before + 2);
        EXPECT_TRUE(two.stopScheduler() && two.stopScheduler());
        EXPECT_TRUE(comesTrue(allEnded));
        EXPECT_TRUE(two.startScheduler());
        EXPECT_EQ(threads(), before + 2);
    }
    EXPECT_TRUE(comesTrue(allEnded));
}

// One worker takes from the back of a pass over a, b and c; what an event pushes comes first.
TEST_F(SchedulerTest, AnEventPutsItsProcessNext)
{
    for (const bool event : {false, true}) {
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
            return make(one, name, "Note", {{"in", '"' + name + '"'}}, {{"out", "out"}},
                        event ? events : Corvale::PairList(), {}, 3, 0.001f);
        };
        EXPECT_TRUE(note("b", {}) && note("d", {{"out", "b"}}) && note("a", {{"b:out", "self"}}) &&
                    note("c", {}));
        one.startScheduler();
        EXPECT_TRUE(comesTrue([&] {
            const std::lock_guard<std::mutex> guard(mutex);
            return order.size() == 4;
        }));
        EXPECT_EQ(order, event ? "dbac" : "dcba");
    }
}

TEST_F(SchedulerTest, NoProcessComputesOnTwoThreadsAtOnce)
{
    for (const unsigned int workers : {0u, 1u, 2u, 4u}) {
        std::atomic<int> inside{0};
        std::atomic<int> computed{0};
        std::atomic<bool> together{false};
        Corvale corvale(workers);
        corvale.createSource("s");
        corvale.createFilter(boost::make_shared<FunctionFilter>("Enter", [&](Value in) {
            together = ++inside != 1 || together;
            std::this_thread::yield();
            --inside;
            ++computed;
            return in;
        }));
        pass(corvale, "p", "s", "Enter");
        pass(corvale, "q", "s");
        EXPECT_TRUE(comesTrue([&] {
            corvale.setData("s", value(1));
            corvale.getData("p:out");
            return computed > 200;
        })) << workers;
        EXPECT_FALSE(together) << workers;
        EXPECT_EQ(faults(), 0u);
    }
}

TEST_F(SchedulerTest, WorkersComputeWhatArrivesAndStandStillWhenStopped)
{
    for (const unsigned int workers : {1u, 3u}) {
        Corvale corvale(workers);
        corvale.createSource("s");
        pass(corvale, "p", "s");
        pass(corvale, "q", "p:out");
        const auto shows = [&](const std::string& content) {
            return comesTrue([&] { return text(corvale.getLastData("q:out")) == content; });
        };
        corvale.setData("s", value("a"));
        EXPECT_TRUE(shows("a"));
        corvale.stopScheduler();
        corvale.setData("s", value("b"));
        EXPECT_EQ(text(corvale.getLastData("p:out")), "a");
        EXPECT_EQ(joined(corvale.getScheduledJobs()), "p q");
        corvale.startScheduler();
        EXPECT_TRUE(shows("b"));
    }
}

TEST_F(SchedulerTest, WhatIsDeletedWhileItRunsEnds)
{
    std::vector<boost::weak_ptr<FunctionFilter>> filters;
    const auto allEnded = [&] {
        return std::all_of(filters.begin(), filters.end(),
                           [](const auto& filter) { return filter.expired(); });
    };
    Corvale corvale(3);
    corvale.createSource("s");
    const auto runs = [&](const std::string& name, int content) {
        const auto filter = boost::make_shared<FunctionFilter>("Pass", [](Value in) { return in; });
        filters.push_back(filter);
        corvale.createFilter(filter);
        EXPECT_TRUE(pass(corvale, name, "s", "Pass"));
        corvale.deleteFilter("Pass");
        corvale.setData("s", value(content));
        return comesTrue([&] {
            return content % 4 != 0 || text(corvale.getLastData(name + ":out")) == std::to_string(content);
        });
    };
    for (int i = 0; i < 60; ++i) {
        const std::string name = "p" + std::to_string(i % 3);
        EXPECT_TRUE(runs(name, i));
        EXPECT_TRUE(corvale.deleteProcess(name));
    }
    EXPECT_TRUE(corvale.getScheduledJobs().empty());
    EXPECT_TRUE(comesTrue(allEnded));
    EXPECT_TRUE(runs("p", 60));
    corvale.stopScheduler();
    corvale.deleteProcess("p");
    EXPECT_TRUE(allEnded()) << "a stopped scheduler holds nothing";
}
