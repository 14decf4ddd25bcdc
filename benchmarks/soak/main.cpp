// Does anything add up over millions of computations? Small ones and those of pictures take turns, and on the
// way filters, sources and processes come and go, programs are loaded from files, and workers stop and start.
//
//   bench_soak [ROUNDS]    a round is 1000 small computations and 10 of pictures; 10,000 if it is not said
//
// Prints what the process uses after the first tenth and in the end. Exit code 1 if the memory has grown by
// more than 2 % since then or a file descriptor or a thread is left over, 2 if a result is wrong.

#include "benchmarks/support/usage.h"
#include "benchmarks/support/watchdog.h"
#include "corvale/data/data.h"
#include "corvale/data/datagrayscaleimage.h"
#include "corvale/engine/corvale.h"
#include "corvale/filter/userfilter.h"

#include <boost/filesystem.hpp>
#include <boost/make_shared.hpp>
#include <opencv2/core.hpp>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

using namespace ZR::Corvale;

namespace {

using Value = boost::shared_ptr<Data>;

constexpr int smallOnes = 1000; // of a round
constexpr int pictures = 10;    // of a round

// What stays for the whole run: `live` is for the workers.
const std::string lasting = R"(
    source number { 0 } source picture { }
    filter Inner { Identity i; Append l; i -> l:item; i:in <= x; l:out => list }
    filter Outer { Inner n; Head h; Duplicate d; n -> h; h -> d; n:x <= x; d:left => left; d:right => right }
    filter Regions { Threshold t; Dilation d; Labelize l; BoundingBox b; t -> d:in; d -> l:in; l -> b:in;
                     t:in <= in; t:ceil[128] <= ceil; d:size[3] <= size; b:out => boxes; d:out => mask }
    process upstream(Outer, 3, infinity) { x <= number; left => out }
    process small(Outer, 3, infinity) { x <= upstream:out; left => all; right => all }
    process regions(Regions, 3, infinity) { in <= picture; boxes => boxes; mask => mask }
    process live(Identity, 3, 1000.0) { in <= small:all; out => out })";

// What comes and goes with each round, under names of its own.
std::string passing(const std::string& name)
{
    return "filter " + name + R"({ Kept k; Accum a; k:in <= in; a:in <= image; a:factor[0.5] <= factor;
                                   k:out => kept; a:out => average }
        process )" +
           name + "(" + name + R"(, 3, infinity)
        { source in; in <= this:in; image <= picture; kept => kept; average => average })";
}

void demand(bool met, const char* what)
{
    if (!met)
        throw std::runtime_error(what);
}

// Keeps the last value of each place.
struct Kept : UserFilter
{
    std::string getName() override { return "Kept"; }
    std::string getDescription() override { return "gives the value before"; }
    std::vector<std::string> getInputs() override { return {"in"}; }
    std::vector<std::string> getOutputs() override { return {"out"}; }
    bool hasLocalData() override { return true; }
    std::vector<Value> applyFilter(const std::vector<Value>& inputs) override
    {
        const Value former = getLocalData();
        setLocalData(inputs[0]);
        return {former ? former : inputs[0]};
    }
};

Value pictureOf(int round)
{
    cv::Mat pixels(120, 160, CV_8U, cv::Scalar(0));
    for (int i = 0; i < 8; ++i)
        pixels(cv::Rect(8 + 18 * i, 10 + round % 80, 8, 8)).setTo(255);
    return boost::make_shared<Data>(boost::make_shared<Type::GrayscaleImage>(pixels));
}

void compute(Corvale& engine, int round)
{
    for (int i = 0; i < smallOnes; ++i) {
        engine.setData("number", boost::make_shared<Data>(i));
        const std::vector<Value> both = *engine.getData("small:all");
        demand(both.size() == 2 && static_cast<int>(*both[0]) == i, "a small computation went wrong");
    }
    for (int i = 0; i < pictures; ++i) {
        engine.setData("picture", pictureOf(round * pictures + i));
        const std::vector<Value> boxes = *engine.getData("regions:boxes");
        demand(boxes.size() == 8, "the regions of a picture went wrong");
    }
}

bool load(Corvale& engine, const std::string& program, bool fromFile)
{
    if (!fromFile)
        return engine.loadProgram(program);
    namespace fs = boost::filesystem;
    const fs::path file = fs::temp_directory_path() / fs::unique_path("soak-%%%%-%%%%-%%%%.fgs");
    std::ofstream(file.string()) << program;
    const bool loaded = engine.loadProgramFromFile(file.string());
    fs::remove(file);
    return loaded;
}

void comeAndGo(Corvale& engine, int round)
{
    const std::string name = "passing" + std::to_string(round);
    demand(engine.createFilter(boost::make_shared<Kept>()), "a user filter could not be made");
    demand(load(engine, passing(name), round % 100 == 0), "a program could not be loaded");
    demand(engine.createSourceFromProcessSink("slow", name + ":average") &&
               engine.createSourceAlias("slower", "slow"),
           "a source could not be made");
    engine.createEvent(name + ":kept", [](Value) {});
    engine.setData(name + ":in", boost::make_shared<Data>(round));
    demand(engine.getData(name + ":kept") != nullptr, "a passing process did not compute");
    engine.renameProcess(name, "gone");
    engine.disableProcess("gone");
    demand(engine.deleteSource("slower") && engine.deleteSource("slow") && engine.deleteProcess("gone") &&
               engine.deleteFilter(name) && engine.deleteFilter("Kept"),
           "something could not be deleted");
    if (round % 100 == 0) {
        engine.stopScheduler();
        engine.startScheduler();
    }
}

struct Memory // in bytes
{
    std::size_t early = 0; // after the first tenth
    std::size_t late = 0;
};

Memory run(int rounds)
{
    Memory memory;
    support::Watchdog watchdog(1);
    Corvale engine(2);
    demand(engine.loadProgram(lasting), "the program could not be loaded");
    for (int round = 0; round < rounds; ++round) {
        watchdog.step(0, round);
        compute(engine, round);
        comeAndGo(engine, round);
        if (round == rounds / 10)
            memory.early = support::residentBytes();
    }
    memory.late = support::residentBytes();
    return memory;
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 10000;
    std::cout << rounds * static_cast<long long>(smallOnes) << " small computations, "
              << rounds * static_cast<long long>(pictures) << " of pictures, " << rounds
              << " filters and processes that come and go\n";
    try {
        run(1); // what is made once is there
        const std::ptrdiff_t files = support::openFiles();
        const std::ptrdiff_t threads = support::livingThreads();
        const Memory memory = run(rounds);
        const double change =
            100.0 * (static_cast<double>(memory.late) / static_cast<double>(memory.early) - 1.0);
        std::cout << "resident memory: " << memory.early / 1024 << " KiB after the first tenth, "
                  << memory.late / 1024 << " KiB in the end, " << std::showpos << change << " %\n"
                  << std::noshowpos << "files: " << files << " before, " << support::openFiles() << " after\n"
                  << "threads: " << threads << " before, " << support::livingThreads() << " after\n";
        const bool flat = change <= 2.0;
        const bool clean = support::openFiles() == files && support::livingThreads() == threads;
        std::cout << (flat && clean ? "flat\n" : "something adds up\n");
        return flat && clean ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& fault) {
        std::cerr << fault.what() << "\n";
        return 2;
    }
}
