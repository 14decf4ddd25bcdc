#include "corvale/data/datagrayscaleimage.h"
#include "corvale/data/datalambda.h"
#include "corvale/filters/dataconversion.h"
#include "engine/enginetest.h"

#include <boost/property_tree/exceptions.hpp>
#include <opencv2/core.hpp>

#include <cstdlib>
#include <iostream>
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
    const bool now = left == 0;
    left -= left > 0 || (now && !lasting);
    if (now)
        ++failures; // of the one thread that has failures
    return now;
}

void giveBack(void* block)
{
    given -= block != nullptr;
    std::free(block);
}

} // namespace

// clang-format off
void* operator new(std::size_t size) { return operator new(size, std::align_val_t(16)); }
void* operator new(std::size_t size, std::align_val_t alignment)
{
    const auto step = static_cast<std::size_t>(alignment);
    void* const block = fails() ? nullptr : std::aligned_alloc(step, (size / step + 1) * step);
    return block ? ++given, block : throw std::bad_alloc();
}
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
                           cv::AccessFlag access, cv::UMatUsageFlags use) const override
    {
        if (fails())
            throw cv::Exception(cv::Error::StsNoMem, "", "", "", 0);
        const long rest = std::exchange(left, -1);
        const auto matrix = cv::Mat::getStdAllocator()->allocate(dims, sizes, type, data, step, access, use);
        left = rest;
        return matrix;
    }
    bool allocate(cv::UMatData*, cv::AccessFlag, cv::UMatUsageFlags) const override { return false; }
    void deallocate(cv::UMatData*) const override {} // each knows the one that made it
} pixelAllocator;

struct Host : Corvale
{
    Host() : Corvale(0) {}
    bool build()
    {
        return loadProgram(
                   "source s { } source t { 1 } source u { 2 } source v { 3 }"
                   "filter Twice { Identity a; Identity b; a -> b; a <= in; b => out }"
                   "filter Mean { SlidingWindow window; Twice twice; window -> twice;"
                   "              window:in <= in; window:size[2] <= size; twice => out }"
                   "process mean(Mean, 3, 1000000000.0) { in <= s; out => out }"
                   "process after(Twice, 3, 1000000000.0) { in <= mean:out; out => out }"
                   "process called(Apply, 3, 1000000000.0) { fun <= Twice; param <= u; out => out }") &&
               createSourceAlias("a", "t") &&
               make(*this, "pair", "Duplicate", {{"in", "a"}}, {{"left", "both"}, {"right", "both"}}) &&
               !tables().empty(); // which sources are read is remembered
    }
    bool compute(int level)
    {
        setData("s", value(boost::make_shared<Type::GrayscaleImage>(cv::Mat(300, 300, CV_8U, level))));
        setData("t", value(1)); // a change, though an exception has come between
        setData("u", value(std::vector<Value>{value(level)}));
        for (const char* sink : {"mean:out", "after:out", "called:out", "pair:both", "q:g"}) {
            const Value result = getData(sink);
            const bool picture = result && result->getType() == GrayscaleImage;
            results += (picture ? std::to_string(cv::sum(dataToCvMat(result))[0]) : text(result)) + " ";
        }
        return true;
    }
    // What the tables hold, and what follows from them.
    std::string tables() const
    {
        std::string all = joined(getFilters()) + "/" + joined(getSources()) + "/" + joined(getProcesses()) +
                          "/" + joined(getFilterInputs("F"));
        for (const char* name : {"t", "a", "b", "n"})
            all += text(getSourceData(name)) + (isSourceBound(name) ? "! " : " ");
        return all;
    }
    // After one more change, three computations.
    std::string goOn()
    {
        EXPECT_TRUE(pass(*this, "other", "t") && deleteProcess("other"));
        const bool bound = pass(*this, "reader", "b") && isSourceBound("v");
        resetProcess("mean");
        results = joined(getScheduledJobs()) + (bound ? "! " : " ");
        events = 0;
        for (const int level : {10, 20, 30})
            compute(level);
        return results + std::to_string(events);
    }
    // Whatever stands, all can be deleted, and built again: all locks are free.
    std::string afresh()
    {
        deleteSource("a");
        for (const std::string& name : getProcesses())
            EXPECT_TRUE(deleteProcess(name));
        for (const std::string& name : getSources())
            EXPECT_TRUE(deleteSource(name));
        for (const char* name : {"Twice", "Mean"})
            deleteFilter(name);
        EXPECT_TRUE(build());
        return goOn();
    }

    LogCapture log;
    std::string results;
    int events = 0;
};

using Operation = std::function<bool(Host&)>;

// Runs `attempt` on a host, built or not, again and again, with each allocation failing in turn, alone and
// with all that follow it; each time `check` looks at the host, and nothing may be left in memory.
void withoutMemory(bool built, const Operation& attempt, const std::function<void(Host&, bool done)>& check)
{
    long before = -1; // not known yet: the first run makes what is made once in a program's life
    const auto run = [&](long k, bool lasts) {
        const long former = failures;
        {
            Host host;
            bool done = false;
            EXPECT_TRUE(!built || host.build());
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
            check(host, done);
        }
        EXPECT_TRUE(given == before || before < 0) << k << ": " << given - before << " blocks are left";
        before = given;
        return failures > former;
    };
    run(-1, false);
    for (const bool lasts : {false, true})
        for (long k = 0; run(k, lasts) && !testing::Test::HasFailure(); ++k) {
        }
}

} // namespace

TEST(WithoutMemory, BuildingComputingAndStartingLeaveTheEngineUsable)
{
    const auto check = [all = Host().afresh()](Host& host, bool) { EXPECT_EQ(host.afresh(), all); };
    withoutMemory(false, &Host::build, check);
    withoutMemory(
        true, [](Host& host) { return host.compute(7) && host.compute(8); }, check);
    withoutMemory(
        false,
        [](Host&) {
            Corvale faulty(2); // two links to one input: what they give is left to the end of the engine
            return faulty.stopScheduler() &&
                   faulty.loadProgram(
                       "filter F { Duplicate d; Identity c; d:left -> c; d:right -> c; d <= in;"
                       "c => out; d:left => left } process p(F) { <= 1; out => o; left => l }") &&
                   faulty.getData("p:l");
        },
        [](Host&, bool) {});
    std::cout << failures << " allocations have failed\n";
}

TEST(WithoutMemory, EachOperationIsDoneOrHasNoEffect)
{
    const Operation operations[] = {
        [](Host& h) { return h.compute(7) && h.compute(8); },
        [](Host& h) { return h.createSource("n"); },
        [](Host& h) { return h.createSourceFromProcessSink("n", "mean:out"); },
        [](Host& h) { return h.createSourceAlias("b", "v"); },
        [](Host& h) { return h.renameSourceAlias("a", "b"); },
        [](Host& h) { return h.retargetSourceAlias("a", "u"); },
        [](Host& h) { return h.deleteSource("a"); },
        [](Host& h) { return h.createFilter(boost::make_shared<FunctionFilter>("F", nullptr)); },
        [](Host& h) {
            return h.createFilter("F", {{"Head", "i"}}, {}, {{{"i", "in[1]"}, "x"}}, {});
        },
        [](Host& h) { return h.createClassificationFilter("F", KNN, KNN_XML); },
        [](Host& h) { return h.createLambda("Twice")->apply({value(1)}).at(0) != nullptr; },
        [](Host& h) { return h.deleteFilter("Head"); },
        [](Host& h) { return !h.dumpFilter("Mean", -1).empty(); },
        [](Host& h) {
            return make(h, "q", "Duplicate", {{"in", "called:out"}},
                        {{"left", "o"}, {"left", "g"}, {"right", "g"}},
                        {{"o", "mean"}, {"called:out", "self"}}, {{"source", "x"}, {"pulse", "y[1]"}});
        },
        [](Host& h) { return h.renameProcess("mean", "q"); },
        [](Host& h) { return h.deleteProcess("mean"); },
        [](Host& h) { return h.disableProcess("mean"); },
        [](Host& h) { return h.enableProcess("mean"); },
        [](Host& h) { return h.resetProcess("mean"); },
        [](Host& h) { return h.setProcessPriority("mean", 5) && h.setProcessFrequency("mean", 1e8f); },
        [](Host& h) { return h.createEvent("mean:out", [&h](Value) { ++h.events; }); },
        [](Host& h) { return h.stopScheduler() && h.startScheduler(); }};
    for (const Operation& operation : operations) {
        SCOPED_TRACE(&operation - operations);
        Host changed;
        EXPECT_TRUE(changed.build());
        const std::string before = changed.tables();
        EXPECT_TRUE(operation(changed));
        const std::string after = changed.tables(), result = changed.goOn();
        withoutMemory(true, operation, [&](Host& host, bool done) {
            const std::string now = host.tables();
            EXPECT_TRUE(now == after || (now == before && !done)) << now;
            EXPECT_TRUE(done || (now == after && now != before) || operation(host));
            EXPECT_EQ(host.tables(), after);
            EXPECT_EQ(host.goOn(), result);
        });
    }
    std::cout << failures << " allocations have failed\n";
}
