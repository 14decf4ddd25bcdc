#include "corvale/data/datagrayscaleimage.h"
#include "corvale/filters/dataconversion.h"
#include "engine/enginetest.h"

#include <boost/property_tree/exceptions.hpp>
#include <opencv2/core.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <new>
#include <utility>

// The allocations of this thread, by `new` and for the pixels of matrices, can be made to fail.

namespace {

thread_local long left = -1; // allocations until one fails; below 0 none does
thread_local bool lasting = false;
std::atomic<long> given{0}; // blocks of `new` that have not come back
long failures = 0;

bool fails()
{
    if (left != 0) {
        left -= left > 0;
        return false;
    }
    left = lasting ? 0 : -1;
    return ++failures != 0;
}

void* take(std::size_t size, std::size_t alignment = 16)
{
    void* const block = fails() ? nullptr : std::aligned_alloc(alignment, (size / alignment + 1) * alignment);
    return block ? ++given, block : throw std::bad_alloc();
}

void giveBack(void* block)
{
    given -= block != nullptr;
    std::free(block);
}

} // namespace

void* operator new(std::size_t size)
{
    return take(size);
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return take(size, static_cast<std::size_t>(alignment));
}
// clang-format off
void operator delete(void* block) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t) noexcept { giveBack(block); }
void operator delete(void* block, std::align_val_t) noexcept { giveBack(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { giveBack(block); }
// clang-format on

namespace {

using namespace support;

// OpenCV's own loses the pixels when it has no room for their header, so that fails as a whole.
struct PixelAllocator : cv::MatAllocator
{
    PixelAllocator() { cv::Mat::setDefaultAllocator(this); }
    cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, std::size_t* step,
                           cv::AccessFlag access, cv::UMatUsageFlags usage) const override
    {
        if (fails())
            throw cv::Exception(cv::Error::StsNoMem, "", "", "", 0);
        const long rest = std::exchange(left, -1);
        cv::UMatData* const matrix =
            cv::Mat::getStdAllocator()->allocate(dims, sizes, type, data, step, access, usage);
        left = rest;
        return matrix;
    }
    bool allocate(cv::UMatData*, cv::AccessFlag, cv::UMatUsageFlags) const override { return false; }
    void deallocate(cv::UMatData*) const override {} // each knows the one that made it
} pixelAllocator;

const char* const program = R"(
    source picture { } source list { }
    filter Twice { Identity a; Identity b; a -> b; a <= in; b => out }
    filter Mean { SlidingWindow window; Twice twice; window -> twice;
                  window:in <= in; window:size[2] <= size; twice => out }
    process mean(Mean, 3, 1000000000.0) { in <= picture; out => out }
    process pair(Duplicate, 3, 1000000000.0) { in <= picture; left => both; right => both }
    process after(Twice, 3, 1000000000.0) { in <= mean:out; out => out }
    process called(Apply, 3, 1000000000.0) { fun <= Twice; param <= list; out => out })";

std::string shown(const Value& value)
{
    std::string all;
    if (value && value->getType() == GrayscaleImage)
        return std::to_string(cv::sum(dataToCvMat(value))[0]) + " ";
    if (!value || value->getType() != Array)
        return text(value) + " ";
    for (const Value& element : static_cast<std::vector<Value>>(*value))
        all += shown(element);
    return all;
}

struct Host
{
    bool load() { return engine.loadProgram(program); }
    bool compute(int level)
    {
        engine.setData("picture", value(boost::make_shared<Type::GrayscaleImage>(
                                      cv::Mat(300, 300, CV_8UC1, cv::Scalar(level)))));
        engine.setData("list", value(std::vector<Value>{value(level)}));
        for (const char* sink : {"mean:out", "pair:both", "after:out", "called:out"})
            results += shown(engine.getData(sink));
        return true;
    }
    // Whatever stands, the program can be loaded again and computes: all locks are free.
    std::string afresh()
    {
        for (const std::string& name : engine.getProcesses())
            EXPECT_TRUE(engine.deleteProcess(name));
        for (const std::string& name : engine.getSources())
            EXPECT_TRUE(engine.deleteSource(name));
        for (const char* name : {"Twice", "Mean"})
            engine.deleteFilter(name);
        EXPECT_TRUE(load());
        return goOn() + joined(engine.getScheduledJobs());
    }
    std::string goOn()
    {
        engine.resetProcess("mean");
        results.clear();
        for (const int level : {10, 20, 30})
            compute(level);
        return results;
    }
    // What the tables hold, and what follows from them.
    std::string tables() const
    {
        std::string all = joined(engine.getFilters()) + "/" + joined(engine.getSources()) + "/" +
                          joined(engine.getProcesses()) + "/" + joined(engine.getFilterInputs("F"));
        for (const char* name : {"s", "t", "a", "b", "n"})
            all += text(engine.getSourceData(name)) + (engine.isSourceBound(name) ? "! " : " ");
        return all;
    }
    // After one more change.
    std::string schedule()
    {
        EXPECT_TRUE(pass(engine, "other", "t") && engine.deleteProcess("other"));
        return joined(engine.getScheduledJobs()) + text(engine.getData("p:out")) +
               text(engine.getData("q:out"));
    }

    LogCapture log;
    Corvale engine{0};
    std::string results;
};

// Runs `attempt` on a host by `prepare` again and again, with each allocation failing in turn, alone and
// with all that follow it; each time `check` looks at the host, and nothing may be left in memory.
template <typename Attempt, typename Check>
void withoutMemory(void (*prepare)(Host&), Attempt attempt, Check check)
{
    long before = 0;
    const auto run = [&](long k, bool lasts) {
        const long former = failures;
        {
            Host host;
            prepare(host);
            bool done = false;
            lasting = lasts;
            left = k;
            try {
                done = attempt(host);
            } catch (const std::bad_alloc&) {
            } catch (const boost::property_tree::ptree_error&) { // whose streams have no memory
            } catch (const cv::Exception& exception) {
                EXPECT_EQ(exception.code, cv::Error::StsNoMem);
            }
            left = -1;
            EXPECT_TRUE(done || failures > former) << k;
            check(host);
        }
        EXPECT_EQ(given, before == 0 ? given.load() : before) << k;
        before = given;
        return failures > former;
    };
    run(-1, false); // what is made once in a program's life
    before = given;
    for (const bool lasts : {false, true})
        for (long k = 0; run(k, lasts) && !testing::Test::HasFailure(); ++k) {
        }
}

void nothing(Host&) {}
void programLoaded(Host& host)
{
    EXPECT_TRUE(host.load());
}
void tablesFilled(Host& host)
{
    for (const char* name : {"s", "t"})
        EXPECT_TRUE(host.engine.createSource(name) && host.engine.setData(name, value(name)));
    EXPECT_TRUE(host.engine.createSourceAlias("a", "s") && pass(host.engine, "p", "a"));
    host.tables(); // which sources are bound is remembered
}

TEST(WithoutMemory, BuildingAndComputingLeaveTheEngineUsable)
{
    const auto check = [expected = Host().afresh()](Host& host) { EXPECT_EQ(host.afresh(), expected); };
    withoutMemory(
        nothing, [](Host& host) { return host.load(); }, check);
    const auto compute = [](Host& host) { return host.compute(7) && host.compute(8); };
    withoutMemory(programLoaded, compute, check);
    withoutMemory(programLoaded, compute, [expected = Host().afresh()](Host& host) {
        EXPECT_EQ(host.goOn() + joined(host.engine.getScheduledJobs()), expected);
    });
    withoutMemory(
        nothing, [](Host&) { return Corvale(2).stopScheduler(); }, [](Host&) {});
}

TEST(WithoutMemory, EachOperationIsDoneOrHasNoEffect)
{
    const std::vector<std::function<bool(Corvale&)>> operations = {
        [](Corvale& e) { return e.createSource("n"); },
        [](Corvale& e) { return e.createSourceFromProcessSink("n", "p:out"); },
        [](Corvale& e) { return e.createSourceAlias("b", "s"); },
        [](Corvale& e) { return e.renameSourceAlias("a", "b"); },
        [](Corvale& e) { return e.retargetSourceAlias("a", "t"); },
        [](Corvale& e) { return e.deleteSource("a"); },
        [](Corvale& e) {
            return e.createFilter(boost::make_shared<FunctionFilter>("F", FunctionFilter::Function()));
        },
        [](Corvale& e) {
            return e.createFilter("F", {{"Identity", "i"}}, {}, {{{"i", "in[1]"}, "in"}},
                                  {{{"i", ""}, "out"}});
        },
        [](Corvale& e) { return e.createClassificationFilter("F", KNN, KNN_XML); },
        [](Corvale& e) { return e.createLambda("Head") != nullptr; },
        [](Corvale& e) { return e.deleteFilter("Head"); },
        [](Corvale& e) { return !e.dumpFilter("Head", -1).empty(); },
        [](Corvale& e) {
            return make(e, "q", "Duplicate", {{"in", "p:out"}},
                        {{"left", "out"}, {"left", "g"}, {"right", "g"}}, {{"out", "p"}, {"p:out", "self"}},
                        {{"source", "x"}, {"pulse", "y[1]"}});
        },
        [](Corvale& e) { return e.renameProcess("p", "q"); },
        [](Corvale& e) { return e.deleteProcess("p"); },
        [](Corvale& e) { return e.disableProcess("p"); },
        [](Corvale& e) { return e.enableProcess("p"); },
        [](Corvale& e) { return e.resetProcess("p"); },
        [](Corvale& e) { return e.setProcessPriority("p", 5) && e.setProcessFrequency("p", 1e8f); },
        [](Corvale& e) { return e.createEvent("p:out", [](Value) {}); },
        [](Corvale& e) { return e.stopScheduler() && e.startScheduler(); }};
    for (std::size_t i = 0; i < operations.size() && !HasFailure(); ++i) {
        Host changed;
        tablesFilled(changed);
        const std::string before = changed.tables();
        EXPECT_TRUE(operations[i](changed.engine)) << i;
        const std::string after = changed.tables(), schedule = changed.schedule();
        withoutMemory(
            tablesFilled, [&](Host& host) { return operations[i](host.engine); },
            [&](Host& host) {
                const std::string now = host.tables();
                EXPECT_TRUE(now == before || now == after) << i << now;
                EXPECT_TRUE((now == after && now != before) || operations[i](host.engine)) << i;
                EXPECT_EQ(host.tables(), after) << i;
                EXPECT_EQ(host.schedule(), schedule) << i;
            });
    }
    std::cout << failures << " allocations have failed\n";
}

} // namespace
