#include "corvale/data/datalambda.h"
#include "engine/enginetest.h"

#include <boost/thread/thread.hpp>

using namespace support;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;

namespace {

struct ProcessTest : EngineTest
{
    ProcessTest() { engine.createFilter(boost::make_shared<Count>()); }
};

} // namespace

TEST_F(ProcessTest, AnInputIsASourceBeforeItIsALiteralOrAFilter)
{
    for (const std::string name : {"true", "null", "Identity"}) {
        engine.createSource(name);
        engine.setData(name, value(name + "!"));
        pass(engine, name, name);
        EXPECT_EQ(get(name + ":out"), name + "!");
    }
    engine.setData("s", value(std::vector<Value>{value(6)}));
    engine.createFilter(
        boost::make_shared<FunctionFilter>("Twice", [](Value x) { return value(2 * int(*x)); }));
    EXPECT_TRUE(make(engine, "p", "Apply", {{"fun", "Twice"}, {"param", "s"}}, {{"", "out"}}));
    EXPECT_TRUE(engine.deleteFilter("Twice"));
    EXPECT_EQ(get("p:out"), "12") << "a function outlives its filter's name";
    EXPECT_EQ(faults(), 0u);
}

// On a thread of little stack, each call computes as far up the row as the stack reaches.
TEST_F(ProcessTest, ARowOfReadersDeeperThanTheStackGivesLastValues)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer takes most of a little stack for itself";
#endif
    constexpr int length = 500;
    pass(engine, "p0", "s");
    for (int i = 1; i < length; ++i)
        pass(engine, "p" + std::to_string(i), "p" + std::to_string(i - 1) + ":out");
    boost::thread::attributes little;
    little.set_stack_size(256 * 1024);
    boost::thread(little, [this] {
        for (int i = 0; i < length; i += 10)
            engine.getData("p" + std::to_string(i) + ":out");
    }).join();
    EXPECT_EQ(text(engine.getLastData("p490:out")), "1");
    EXPECT_THAT(log.messages(rk::log::Error),
                Each(EndsWith("too many processes read one another in a row.")));
    EXPECT_GT(log.count(rk::log::Error), 0u);
    for (int i = 0; i < length - 1; ++i)
        engine.deleteProcess("p" + std::to_string(i));
    boost::thread(little, [this] { engine.deleteProcess("p499"); }).join(); // which held all the others
}

TEST_F(ProcessTest, EachLambdaHasAMemoryOfItsOwn)
{
    for (int i = 0; i < 100; ++i) // whose nodes come to lie where others lay
        EXPECT_EQ(text(engine.createLambda("Count")->apply({value(1)}).at(0)), "1");
}

TEST_F(ProcessTest, EventsCallBackWithEachValueOfTheirSink)
{
    std::string calls;
    make(engine, "p", "Duplicate", {{"in", "s"}},
         {{"left", "b"}, {"right", "a"}, {"left", "g"}, {"right", "g"}});
    for (const std::string sink : {"p:b", "p:g", "p:a", "p:a"})
        EXPECT_TRUE(
            engine.createEvent(sink, [&calls, sink](Value data) { calls += sink + text(data) + " "; }));
    EXPECT_TRUE(engine.createEvent("p:a", boost::function<void(Value)>())) << "an empty one does nothing";
    for (const Value& data : {value(5), Value()}) { // no value, no event
        engine.setData("s", data);
        engine.getData("p:a");
        EXPECT_EQ(calls, "p:a5 p:a5 p:b5 p:g{5;5} ");
    }
}

TEST_F(ProcessTest, FiltersAreListedReplacedAndKeptByWhatUsesThem)
{
    EXPECT_EQ(joined(engine.getFilterInputs("Dispatch")), "optional in [Boolean] state");
    EXPECT_EQ(engine.getFilterDescription("Count"), "for tests");
    EXPECT_EQ(engine.getInstrumentationResult(), "");
    const auto give = [this](const char* result) {
        const auto filter = [result](Value) { return value(result); };
        return engine.createFilter(
            boost::make_shared<FunctionFilter>("Give", filter, "optional in[Integer Float]"));
    };
    EXPECT_TRUE(give("first"));
    EXPECT_THAT(engine.getFilterInputs("Give"), ElementsAre("optional [Integer, Float] in"));
    pass(engine, "p", "s", "Give");
    ASSERT_TRUE(engine.createFilter("Inside", {{"Give", "g"}, {"Identity", "g"}}, {},
                                    {{{"g", "in[4]"}, "in"}}, {{{"g", ""}, "out"}}));
    pass(engine, "q", "s", "Inside");
    EXPECT_TRUE(give("second"));
    pass(engine, "r", "s", "Give");
    EXPECT_TRUE(engine.deleteFilter("Give") && engine.deleteFilter("Inside"));
    EXPECT_EQ(get("p:out") + get("q:out") + get("r:out"), "firstfirstsecond");
    const auto fails = [](Value) -> Value { throw std::runtime_error("no"); };
    engine.createFilter(boost::make_shared<FunctionFilter>("Give", fails));
    pass(engine, "t", "s", "Give");
    EXPECT_THROW(engine.getData("t:out"), std::runtime_error);
    EXPECT_EQ(get("r:out"), "second") << "the engine stays usable";
    EXPECT_TRUE(engine.deleteProcess("t"));
}
