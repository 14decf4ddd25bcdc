#include "corvale/data/datalambda.h"
#include "engine/enginetest.h"

#include <boost/thread/thread.hpp>

using namespace support;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;

namespace {

// Counts its computations in each place where it stands.
struct Count : FunctionFilter
{
    Count() : FunctionFilter("Count", [this](Value) { return count(); }) {}
    bool hasLocalData() override { return true; }
    Value count()
    {
        const Value before = getLocalData();
        setLocalData(value((before ? int(*before) : 0) + 1));
        return getLocalData();
    }
};

struct ProcessTest : EngineTest
{
    ProcessTest() { engine.createFilter(boost::make_shared<Count>()); }
};

} // namespace

TEST_F(ProcessTest, AnInputIsASourceThenALiteralThenAFilter)
{
    const std::pair<const char*, const char*> rows[] = {
        {"true", "True"}, {"1", "1"},           {"-1", "-1"},       {"", "0"},
        {"1.5", "1.5f"},  {"infinity", "inff"}, {"\"a;b\"", "a;b"}, {"null", "null"}};
    for (const auto& [expression, shown] : rows) {
        ASSERT_TRUE(pass(engine, "p", expression)) << expression;
        EXPECT_EQ(get("p:out"), shown) << expression;
        engine.deleteProcess("p");
    }
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

TEST_F(ProcessTest, GeneratedNamesCountOnFromInputsToOutputs)
{
    Corvale::PairList inputs;
    Corvale::PairList outputs;
    for (const char digit : std::string("12345678")) {
        inputs.emplace_back(std::string("in") + digit, digit == '8' ? "s" : std::string(1, digit));
        outputs.emplace_back(std::string("out") + digit, "all");
    }
    outputs.emplace_back("out2", "one");
    ASSERT_TRUE(make(engine, "q", "Mandatory8", inputs, outputs));
    EXPECT_EQ(engine.getProcessSources("q").size(), 8u);
    EXPECT_EQ(joined(engine.getProcessSinks("q")).substr(0, 29), "___Anonymous10 ___Anonymous11");
    EXPECT_EQ(joined(engine.getProcessAggregatedSinks("q")), "all");
    EXPECT_EQ(get("q:one"), "2");
    EXPECT_EQ(get("q:all"), "{4;5;6;7;1;1;2;3}") << "names 7 to 14 in byte order";
}

TEST_F(ProcessTest, LocalSourcesAndPulsesBelongToTheProcess)
{
    ASSERT_TRUE(make(engine, "p", "Mandatory3", {{"in1", "this:x"}, {"in2", "this:z"}, {"in3", "s"}},
                     {{"out1", "x"}, {"out2", "z"}, {"out3", "s"}}, {},
                     {{"source", "x"}, {"pulse", "y"}, {"pulse", "z[3]"}, {"source", "s"}}));
    EXPECT_THAT(engine.getSources(), ElementsAre("s"));
    EXPECT_EQ(joined(engine.getProcessSources("p")), "s x y z");
    EXPECT_EQ(get("p:x"), "null");
    EXPECT_EQ(text(engine.getSourceData("p:z")), "3");
    engine.setData("p:x", value(8));
    engine.setData("p:z", value(9));
    EXPECT_EQ(get("p:x"), "8");
    EXPECT_EQ(text(engine.getLastData("p:z")) + text(engine.getLastData("p:s")), "91");
    EXPECT_EQ(get("p:z"), "3") << "the pulse is over";
}

TEST_F(ProcessTest, ATakenNameDropsANewProcessAndARenamedOneTakesItOver)
{
    pass(engine, "a", "s", "Count");
    pass(engine, "b", "s");
    pass(engine, "reader", "a:out");
    log.clear();
    EXPECT_TRUE(make(engine, "b", "Duplicate", {{"in", "s"}}, {{"left", "l"}}, {}, {}, 7, 2.5f));
    EXPECT_THAT(log.messages(), ElementsAre(R"(new corvale process: "b" priority: 7 frequency: 2.5)"));
    EXPECT_THAT(engine.getProcessSinks("b"), ElementsAre("out"));
    EXPECT_EQ(jobs(), "a b reader");
    EXPECT_EQ(get("a:out"), "1");
    EXPECT_TRUE(engine.renameProcess("a", "a")) << "onto itself";
    EXPECT_TRUE(engine.renameProcess("a", "b"));
    EXPECT_THAT(engine.getProcesses(), ElementsAre("b", "reader"));
    EXPECT_EQ(jobs(), "b b reader") << "the schedule holds processes, not names";
    engine.setData("s", value(2));
    EXPECT_EQ(get("b:out"), "1") << "its filters' memory stood under the former name";
    EXPECT_EQ(get("reader:out"), "1");
    engine.disableProcess("b");
    EXPECT_FALSE(engine.isProcessZombie("b")) << "readers know it by the name that it had";
    EXPECT_TRUE(engine.deleteProcess("b"));
    EXPECT_EQ(faults(), 0u);
}

TEST_F(ProcessTest, ADeletedProcessServesItsReadersUnderBothTheirInputs)
{
    pass(engine, "p", "s", "Count");
    ASSERT_TRUE(make(engine, "reader", "Mandatory2", {{"in1", "p:out"}, {"in2", "p:out"}},
                     {{"out1", "a"}, {"out2", "a"}}));
    EXPECT_THAT(engine.getProcessSources("reader"), ElementsAre("p:out"));
    EXPECT_EQ(get("reader:a"), "{1;1}");
    log.clear();
    EXPECT_TRUE(engine.deleteProcess("p"));
    EXPECT_THAT(log.messages(rk::log::Verbose), ElementsAre(R"(Delete process "p".)"));
    EXPECT_EQ(jobs(), "reader");
    for (const char* counts : {"{1;1}", "{2;2}"}) { // its filters' memory went with its name
        engine.setData("s", value(2));
        EXPECT_EQ(get("reader:a"), counts);
    }
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

TEST_F(ProcessTest, ADisabledProcessRunsOnWhileAnActiveOneReadsIt)
{
    const auto zombies = [this] {
        std::string names;
        for (const std::string& name : engine.getProcesses())
            names += engine.isProcessZombie(name) ? name : "";
        return names;
    };
    pass(engine, "c", "s"); // a reads b reads c, and so does d
    pass(engine, "b", "c:out");
    pass(engine, "a", "b:out");
    pass(engine, "d", "b:out");
    const std::tuple<char, const char*, const char*, const char*> steps[] = {
        {'-', "c", "c", "a b c d"}, {'-', "b", "bc", "a b c d"}, {'-', "a", "bc", "b c d"},
        {'-', "d", "", ""},         {'+', "b", "c", "b c"},      {'+', "d", "c", "b c d"},
        {'-', "b", "bc", "b c d"},  {'+', "c", "b", "b c d"}};
    for (const auto& [change, name, expected, scheduled] : steps) {
        EXPECT_TRUE(change == '+' ? engine.enableProcess(name) : engine.disableProcess(name));
        EXPECT_EQ(engine.isProcessEnable(name), change == '+');
        EXPECT_EQ(zombies(), expected) << change << name;
        EXPECT_EQ(jobs(), scheduled) << change << name;
    }
    EXPECT_EQ(get("d:out") + get("b:out") + get("a:out"), "11null") << "a zombie shows its values";
    engine.deleteProcess("d");
    EXPECT_EQ(zombies(), "");
    pass(engine, "e", "b:out");
    EXPECT_EQ(zombies() + jobs(), "bb c e") << "a new reader";
    engine.renameProcess("a", "b");
    EXPECT_EQ(zombies() + jobs(), "b c e") << "nothing looks at the connections";
    pass(engine, "f", "s");
    EXPECT_EQ(zombies() + jobs(), "bb c e f") << "readers read who bears the name";
}

TEST_F(ProcessTest, EachLambdaHasAMemoryOfItsOwn)
{
    for (int i = 0; i < 100; ++i) // whose nodes come to lie where others lay
        EXPECT_EQ(text(engine.createLambda("Count")->apply({value(1)}).at(0)), "1");
}

TEST_F(ProcessTest, AResetForgetsThePeriodAndRatesAreCut)
{
    make(engine, "p", "Count", {{"in", "s"}}, {{"out", "out"}}, {}, {}, 3, 0.001f);
    EXPECT_EQ(get("p:out"), "1");
    engine.setData("s", value(2));
    EXPECT_EQ(get("p:out"), "1") << "the period is not over";
    EXPECT_TRUE(engine.resetProcess("p"));
    EXPECT_EQ(text(engine.getLastData("p:out")), "null");
    engine.setProcessPriority("p", 100);
    EXPECT_EQ(engine.getProcessPriority("p"), 8u);
    engine.setProcessPriority("p", 0);
    EXPECT_EQ(jobs() + get("p:out"), "1") << "computed anew by the host, counting from the start";
    engine.setProcessFrequency("p", -3.0f);
    EXPECT_EQ(engine.getProcessFrequency("p"), 0.0f);
    engine.resetProcess("p");
    EXPECT_EQ(get("p:out"), "null") << "it stands still";
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
