// The engine's own cost beside oneTBB's, in one run: three times each, the least counts. Exit code 1 if a
// target is missed.

#include "support/ratiotable.h"

#include "rk/log.h"

#include <cmath>
#include <iomanip>
#include <iostream>
#include <string>
#include <tuple>

int main(int argc, char** argv)
{
    rk::log::setLevel(rk::log::Warning);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioTable table;
    for (int run = 0; run < 3; ++run)
        benchmark::RunSpecifiedBenchmarks(&table);

    std::cout << "\n"
              << std::left << std::setw(58) << "least of three runs; ns unless said" << std::right
              << std::setw(12) << "ours" << std::setw(12) << "peer" << std::setw(10) << "ratio"
              << std::setw(10) << "at most"
              << "\n";
    const auto row = [&](const std::string& question, const char* name, const char* peer, double target) {
        table.row(std::cout, question, name, peer, target);
    };
    const auto limit = [&](const std::string& question, const std::string& name, const char* unit,
                           double target) { table.limit(std::cout, question, name, unit, target); };
    row("chain of 10, per node, against oneTBB's", "chain/10", "tbbChain/10", 2.2);
    row("chain of 100, per node, against oneTBB's", "chain/100", "tbbChain/100", 2.2);
    row("diamond, per node, against oneTBB's", "diamond", "tbbDiamond", 1.0);
    row("chain of 100 against chain of 10, per node", "chain/100", "chain/10", 1.3);
    row("nested 3 deep against flat, per node", "nesting/3", "nesting/1", 1.2);
    row("nested 5 deep against flat, per node", "nesting/5", "nesting/1", 1.3);
    if (table.has("twoClockReads"))
        limit("source, sink and update; 150 ns and two clock reads", "computation", "ns",
              150.0 + table.figure("twoClockReads"));
    limit("an update that is not due, which allocates nothing", "notDue", "ns", 40.0);
    limit("allocations per node and computation", "chainAllocations", "", 2.0);
    row("two threads that share nothing, per computation", "shareNothing/threads:2", "shareNothing/threads:1",
        1 / 1.9);
    row("two threads that share a source, per computation", "shareSource/threads:2", "shareSource/threads:1",
        1 / 1.3);
    limit("event to run, worker asleep, median", "eventToRun", "us", 30.0);
    for (const auto& [hertz, error, cpu] : {std::tuple("100", 0.1, 3.0), std::tuple("1000", 0.5, 15.0)}) {
        const std::string name = std::string(hertz) + " Hz over 10 s: ";
        const std::string rate = std::string("rate/") + hertz;
        limit(name + "error of the rate", rate + "/error", "%", error);
        limit(name + "lateness, median", rate + "/late_p50", "us", 100.0);
        limit(name + "lateness, 99 of 100", rate + "/late_p99", "us", 400.0);
        limit(name + "of one core", rate + "/cpu", "%", cpu);
    }
    limit("1,000 idle processes at 10 Hz, of one core", "idleProcesses/1000", "%", 5.0);
    limit("the same, loaded while the worker runs", "idleLoadedProcesses/1000", "%", 5.0);
    row("periods spread evenly, against bare sleeps", "idleSpreadProcesses/1000", "timedSleeps", 2.0);
    row("10,000 processes against 1,000, build and pass, each", "buildProcesses/10000", "buildProcesses/1000",
        std::log(10000.0) / std::log(1000.0) * 1.5);
    row("a text of 10 MB against one of 1 MB, per byte", "loadText/100000", "loadText/10000", 1.5);
    return table.verdict(std::cout);
}
