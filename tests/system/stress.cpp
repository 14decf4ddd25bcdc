// Every operation of the engine at random, from several host threads, while workers run what the threads
// build, callbacks fire and programs load.
//
// The steps are bounded and their choice is seeded; what the threads do to one another is not repeatable.
// Names carry a level, and what is built at one level reads lower ones alone, so that the graphs of
// processes stay acyclic whatever comes and goes:
//
//     sources s0_n, aliases a0_n    <--    processes p1_n, their sinks as sources t1_n, aliases a1_n    <--
//     p2_n ...

#include "corvale/data/data.h"
#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale.h"
#include "corvale/filter/userfilter.h"
#include "rk/log.h"

#include <boost/filesystem.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <set>
#include <thread>

using namespace ZR::Corvale;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int steps = 20000;
#else
constexpr int steps = 60000;
#endif
constexpr int hostThreads = 3;
constexpr int levels = 3; // of processes, from 1 on

using Value = boost::shared_ptr<Data>;

// Whoever holds one is counted.
struct Token
{
    Token() { ++alive; }
    Token(const Token&) { ++alive; }
    ~Token() { --alive; }
    static inline std::atomic<int> alive{0};
};

Value token()
{
    return boost::make_shared<Data>(boost::shared_ptr<void>(boost::make_shared<Token>()));
}

class Dice
{
public:
    explicit Dice(unsigned int seed) : _engine(seed) {}
    int operator()(int sides) { return std::uniform_int_distribution<int>(0, sides - 1)(_engine); }
    template <typename List>
    auto of(const List& list)
    {
        return *(std::begin(list) + (*this)(static_cast<int>(std::size(list))));
    }

private:
    std::mt19937 _engine;
};

std::string name(char kind, int level, Dice& dice)
{
    return kind + std::to_string(level) + "_" + std::to_string(dice(3));
}

// A name of any kind that something of this level may read.
std::string readable(int level, Dice& dice)
{
    const int lower = dice(level);
    switch (dice(lower == 0 ? 2 : 4)) {
    case 0:
        return name('s', 0, dice);
    case 1:
        return name('a', lower, dice);
    case 2:
        return name('t', lower, dice);
    default:
        return name('p', lower, dice) + ":" + dice.of(std::vector<std::string>{"out", "more"});
    }
}

// What a callback and a filter may do: nothing that looks at the processes.
void callBack(Corvale& engine, Dice& dice)
{
    switch (dice(5)) {
    case 0:
        engine.setData(name('s', 0, dice), token());
        break;
    case 1:
        engine.getSourceData(name('a', dice(levels), dice));
        break;
    case 2:
        if (const boost::shared_ptr<Type::Lambda> lambda = engine.createLambda("Identity"))
            lambda->apply({token()});
        break;
    case 3:
        engine.getScheduledJobs();
        break;
    }
}

class Mix : public UserFilter
{
public:
    Mix(Corvale& engine, bool keeps) : _engine(engine), _keeps(keeps) {}
    std::string getName() override { return _keeps ? "Keep" : "Mix"; }
    std::string getDescription() override { return "mixes"; }
    std::vector<std::string> getInputs() override { return {"optional a", "optional b"}; }
    std::vector<std::string> getOutputs() override { return {"x", "y"}; }
    bool hasLocalData() override { return _keeps; }
    std::vector<Value> applyFilter(const std::vector<Value>& inputs) override
    {
        thread_local Dice dice(1);
        ++calls;
        callBack(_engine, dice);
        if (_keeps)
            setLocalData(token());
        return {inputs[0] ? inputs[0] : token(), inputs[1]};
    }

    static inline std::atomic<int> calls{0};

private:
    Corvale& _engine;
    const bool _keeps;
    const Token _token;
};

using Step = std::function<void(Corvale&, Dice&)>;

bool createProcess(Corvale& engine, Dice& dice)
{
    const int level = 1 + dice(levels);
    const std::string source =
        dice.of(std::vector<std::string>{"null", "1.5", "Identity", "this:x", "this:y", ""});
    Corvale::PairList events;
    if (dice(4) == 0)
        events.emplace_back("out", name('p', 1 + dice(levels), dice));
    if (dice(4) == 0)
        events.emplace_back(name('p', 1 + dice(levels), dice) + ":out", "self");
    return engine.createProcess(
        name('p', level, dice), dice.of(std::vector<std::string>{"Mix", "Keep", "c0", "c1"}),
        {{"a", readable(level, dice)}, {"b", source.empty() ? readable(level, dice) : source}},
        {{"x", "out"}, {"y", dice(2) ? "out" : "more"}}, events, {{"source", "x"}, {"pulse", "y[2]"}},
        static_cast<unsigned int>(dice(10)), dice.of(std::vector<float>{0.0f, 100.0f, 1e9f, 1e9f}));
}

bool createComposite(Corvale& engine, Dice& dice)
{
    return engine.createFilter(
        "c" + std::to_string(dice(2)),
        {{dice.of(std::vector<std::string>{"Mix", "Keep", "c0"}), "m"}, {"Identity", "i"}},
        {{{"m", "x"}, {"i", "in"}}}, {{{"m", "a[3]"}, "a"}, {{"m", "b"}, "b"}},
        {{{"i", "out"}, "x"}, {{"m", "y"}, "y"}});
}

const std::string program = R"(source s0_0 { 4 } delete process { p3_0 } delete filter { c1 }
    filter c1 { Mix m; m:a <= a; m:b[2] <= b; m:x => x; m:y => y }
    process p1_0(c1, 4, 100.0) { a <= s0_0; b <= "text"; x => out; y => out })";

// Any process, any source or alias, any sink.
std::string process(Dice& dice)
{
    return name('p', 1 + dice(levels), dice);
}
std::string source(Dice& dice)
{
    const int level = dice(levels);
    return name(level == 0 ? dice.of(std::string("sa")) : dice.of(std::string("ta")), level, dice);
}
std::string sink(Dice& dice)
{
    return process(dice) + ":" + dice.of(std::vector<std::string>{"out", "more", "___Anonymous0", "none"});
}

// clang-format off
const std::vector<Step> hostSteps = {
    [](Corvale& e, Dice&) { e.loadProgram(program); },
    [](Corvale& e, Dice& d) { if (d(9) == 0) e.stopScheduler(); else e.startScheduler(); },
    [](Corvale& e, Dice&) { e.getScheduledJobs(); e.getInstrumentationResult(); e.getFilters(); e.getSources(); e.getProcesses(); },
    [](Corvale& e, Dice& d) { const std::string f = d.of(e.getFilters()); e.isFilter(f); e.getFilterDescription(f); e.getFilterInputs(f); e.getFilterOutputs(f); e.dumpFilter(f, -1); },
    [](Corvale& e, Dice& d) { e.createFilter(boost::make_shared<Mix>(e, d(2) == 0)); },
    [](Corvale& e, Dice& d) { if (d(3) == 0) e.deleteFilter("c" + std::to_string(d(2))); else createComposite(e, d); },
    [](Corvale& e, Dice& d) { if (const auto lambda = e.createLambda(d.of(std::vector<std::string>{"Mix", "Keep", "c0", "c1"}))) lambda->apply({token()}); },
    [](Corvale& e, Dice&) { e.createClassificationFilter("k", KNN, "none.xml"); },
    [](Corvale& e, Dice& d) { e.createSource(name('s', 0, d)); },
    [](Corvale& e, Dice& d) { const int l = 1 + d(levels - 1); e.createSourceFromProcessSink(name('t', l, d), name('p', l, d) + ":out"); },
    [](Corvale& e, Dice& d) { const int l = d(levels); e.createSourceAlias(name('a', l, d), l == 0 ? name('s', 0, d) : name('t', l, d)); },
    [](Corvale& e, Dice& d) { const int l = d(levels); e.renameSourceAlias(name('a', l, d), name('a', l, d)); },
    [](Corvale& e, Dice& d) { e.isSourceBound(source(d)); e.getSourceFrequency(source(d)); },
    [](Corvale& e, Dice& d) { e.setData(name('s', 0, d), d(9) ? token() : Value()); },
    [](Corvale& e, Dice& d) { try { e.setData(process(d) + ":x", token()); } catch (const std::out_of_range&) {} },
    [](Corvale& e, Dice& d) { e.getSourceData(source(d)); e.getSourceData(process(d) + ":y"); },
    [](Corvale& e, Dice& d) { if (d(4) == 0) e.deleteSource(source(d)); },
    [](Corvale& e, Dice& d) { createProcess(e, d); },
    [](Corvale& e, Dice& d) { createProcess(e, d); },
    [](Corvale& e, Dice& d) { const int l = 1 + d(levels); e.renameProcess(name('p', l, d), name('p', l, d)); },
    [](Corvale& e, Dice& d) { if (d(3) == 0) e.deleteProcess(process(d)); },
    [](Corvale& e, Dice& d) { if (d(3) == 0) e.disableProcess(process(d)); else e.enableProcess(process(d)); },
    [](Corvale& e, Dice& d) { e.resetProcess(process(d)); },
    [](Corvale& e, Dice& d) { const std::string p = process(d); e.isProcess(p); e.isProcessEnable(p); e.isProcessZombie(p); e.getProcessSources(p); e.getProcessSinks(p); e.getProcessAggregatedSinks(p); },
    [](Corvale& e, Dice& d) { const std::string p = process(d); e.setProcessPriority(p, e.getProcessPriority(p) + 1); e.setProcessFrequency(p, e.getProcessFrequency(p) + 1); e.setProcessDescription(p, e.getProcessDescription(p) + "."); },
    [](Corvale& e, Dice& d) { e.getData(sink(d)); },
    [](Corvale& e, Dice& d) { e.getData(sink(d)); },
    [](Corvale& e, Dice& d) { e.getLastData(sink(d)); },
    [](Corvale& e, Dice& d) { e.createEvent(sink(d), [&e, held = Token()](Value) { thread_local Dice dice(2); callBack(e, dice); }); }};
// clang-format on

// Ends the program with a word when the test does not come to its end.
class Watchdog
{
public:
    Watchdog() : _thread([this] { watch(); }) {}
    ~Watchdog()
    {
        {
            const std::lock_guard<std::mutex> guard(_mutex);
            _done = true;
        }
        _condition.notify_one();
        _thread.join();
    }

private:
    void watch()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        if (!_condition.wait_for(lock, std::chrono::minutes(5), [this] { return _done; })) {
            std::cerr << "The stress test hangs." << std::endl;
            std::abort();
        }
    }

    std::mutex _mutex;
    std::condition_variable _condition;
    bool _done = false;
    std::thread _thread;
};

struct Stress : testing::TestWithParam<std::tuple<int, bool>>
{
    Stress()
    {
        rk::log::setLevel(0);
        rk::log::setHandler(
            [this](const rk::log::Record& record) { fatal += record.level == rk::log::Fatal; });
    }
    ~Stress() override
    {
        rk::log::setHandler(nullptr);
        boost::filesystem::remove_all(folder);
    }

    // A program file of its own at each call, so that it is not passed over as loaded already.
    void loadFile(Corvale& engine)
    {
        const std::string path = (folder / (std::to_string(++files) + ".fgs")).string();
        std::ofstream(path) << program;
        engine.loadProgramFromFile(path);
    }

    void host(Corvale& engine, unsigned int seed, bool retarget)
    {
        Dice dice(seed);
        for (int i = 0; i < steps; ++i) {
            dice.of(hostSteps)(engine, dice);
            const int level = dice(levels);
            if (retarget && dice(20) == 0)
                engine.retargetSourceAlias(name('a', level, dice), name(level == 0 ? 's' : 't', level, dice));
            if (dice(200) == 0)
                loadFile(engine);
        }
    }

    static std::set<std::string> jobs(Corvale& engine)
    {
        const std::vector<std::string> names = engine.getScheduledJobs();
        return {names.begin(), names.end()};
    }

    static std::set<std::string> schedulable(Corvale& engine)
    {
        std::set<std::string> names;
        for (const std::string& name : engine.getProcesses())
            if (engine.getProcessPriority(name) != 0 &&
                (engine.isProcessEnable(name) || engine.isProcessZombie(name)))
                names.insert(name);
        return names;
    }

    const boost::filesystem::path folder =
        boost::filesystem::temp_directory_path() / boost::filesystem::unique_path();
    std::atomic<int> files{0};
    std::atomic<int> fatal{0};
};

} // namespace

// A computation under way when its alias turns elsewhere is known to break the protocol; else none may.
TEST_P(Stress, HostsWorkersAndCallbacksAtOnce)
{
    const auto [workers, retarget] = GetParam();
    const Watchdog watchdog;
    boost::filesystem::create_directories(folder);
    {
        Corvale engine(static_cast<unsigned int>(workers));
        engine.createFilter(boost::make_shared<Mix>(engine, false));
        engine.createFilter(boost::make_shared<Mix>(engine, true));
        std::vector<std::thread> hosts;
        for (unsigned int i = 0; i < hostThreads; ++i)
            hosts.emplace_back([&, i, retarget = retarget] { host(engine, 100 + i, retarget); });
        for (std::thread& thread : hosts)
            thread.join();
        EXPECT_EQ(jobs(engine), schedulable(engine));
        engine.startScheduler();
        for (const std::string& process : engine.getProcesses())
            EXPECT_TRUE(engine.deleteProcess(process));
        for (const std::string& source : engine.getSources())
            EXPECT_TRUE(engine.deleteSource(source));
        for (const std::string& filter : engine.getFilters())
            EXPECT_TRUE(engine.deleteFilter(filter));
        EXPECT_TRUE(engine.getScheduledJobs().empty());
    }
    EXPECT_EQ(Token::alive, 0) << "what the engine held has ended with it";
    EXPECT_TRUE(retarget || fatal == 0) << fatal;
    EXPECT_GT(Mix::calls.exchange(0), steps / 10) << "processes did run";
}

INSTANTIATE_TEST_SUITE_P(Workers, Stress,
                         testing::Values(std::tuple(1, false), std::tuple(2, false), std::tuple(2, true),
                                         std::tuple(4, false)));
