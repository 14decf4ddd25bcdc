#include "engine/enginetest.h"

#include <atomic>

using namespace support;

namespace {

// One worker, with a process "beside" that shares filter and source with what the host computes.
struct Exceptions : testing::Test
{
    Exceptions()
    {
        const auto check = [](Value number) {
            return int(*number) < 0 ? throw std::runtime_error("negative") : number;
        };
        engine.createFilter(boost::make_shared<FunctionFilter>("Check", check));
        engine.loadProgram("filter Both { Identity first; Check second; Identity last; first -> last;"
                           "first <= in; second <= checked; second => checked; last => passed }"
                           "source s { 1 } source beside { 1 } source list { }");
        build("p", 0, "s");
        build("beside", 3, "beside");
        make(engine, "after", "Identity", {{"in", "p:passed"}}, {{"out", "out"}}, {}, {}, 0);
        make(engine, "called", "Apply", {{"fun", "Both"}, {"param", "list"}}, {{"out", "out"}}, {}, {}, 0);
        engine.createEvent("beside:passed", [this](Value) { ++computations; });
        engine.createEvent("p:passed", [](Value number) {
            if (int(*number) == 13)
                throw std::runtime_error("callback");
        });
    }
    void build(const char* name, unsigned int priority, const char* source)
    {
        EXPECT_TRUE(make(engine, name, "Both", {{"in", "s"}, {"checked", source}},
                         {{"passed", "passed"}, {"checked", "checked"}, {"checked", "zChecked"}}, {}, {},
                         priority));
    }
    // Ask for all sinks.
    std::string get(int number)
    {
        engine.setData("s", value(number));
        engine.setData("list", value(std::vector<Value>{value(7), value(number)}));
        std::string all;
        for (const char* sink : {"p:passed", "p:checked", "p:zChecked", "after:out", "called:out"})
            all += text(engine.getData(sink)) + " ";
        return all;
    }

    LogCapture log;
    std::atomic<int> computations{0};
    Corvale engine{1};
};

} // namespace

TEST_F(Exceptions, LeaveAllLocksFreeAndTheNextComputationRight)
{
    EXPECT_EQ(get(2), "2 2 2 2 2 ");
    for (const int bad : {-1, 13, -2, 13}) {
        EXPECT_THROW(get(bad), std::runtime_error);
        EXPECT_THROW((engine.setData("s", value(bad)), engine.getData("after:out")), std::runtime_error);
        engine.setData("list", value(std::vector<Value>{value(7), value(-1)}));
        EXPECT_THROW(engine.getData("called:out"), std::runtime_error);
        const int before = computations;
        engine.setData("beside", value(1));
        EXPECT_TRUE(comesTrue([&] { return computations > before; })) << "the worker goes on";
        EXPECT_EQ(get(3), "3 3 3 3 3 ");
    }
    EXPECT_EQ(log.count(rk::log::Fatal) + log.count(rk::log::Error), 0u);

    EXPECT_THROW(get(-1), std::runtime_error);
    EXPECT_TRUE(engine.deleteProcess("p")); // its own nodes report what was left in them
    build("p", 0, "s");
    EXPECT_EQ(text(engine.getData("beside:checked")), "1");
    engine.setData("s", value(4));
    EXPECT_EQ(text(engine.getData("p:checked")), "4");
}
