// The engine's own cost beside oneTBB's, in one run. Exit code 1 if a target is missed.

#include "support/ratiotable.h"

#include "rk/log.h"

#include <iomanip>
#include <iostream>

int main(int argc, char** argv)
{
    rk::log::setLevel(rk::log::Warning);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioTable table;
    benchmark::RunSpecifiedBenchmarks(&table);

    std::cout << "\n"
              << std::left << std::setw(58) << "least of all repetitions; ns unless said" << std::right
              << std::setw(12) << "ours" << std::setw(12) << "peer" << std::setw(10) << "ratio"
              << std::setw(10) << "at most"
              << "\n";
    const auto row = [&](const char* question, const char* name, const char* peer, double target) {
        table.row(std::cout, question, name, peer, target);
    };
    const auto limit = [&](const char* question, const char* name, const char* unit, double target) {
        table.limit(std::cout, question, name, unit, target);
    };
    row("chain of 1, per node, against oneTBB's", "chain/1", "tbbChain/1", 100.0);
    row("chain of 10, per node, against oneTBB's", "chain/10", "tbbChain/10", 2.2);
    row("chain of 100, per node, against oneTBB's", "chain/100", "tbbChain/100", 2.2);
    row("diamond, per node, against oneTBB's", "diamond", "tbbDiamond", 1.0);
    row("chain of 100 against chain of 10, per node", "chain/100", "chain/10", 1.3);
    row("nested 3 deep against flat, per node", "nesting/3", "nesting/1", 1.2);
    row("nested 5 deep against flat, per node", "nesting/5", "nesting/1", 1.3);
    row("two threads that share nothing, per computation", "shareNothing/threads:2", "shareNothing/threads:1",
        1 / 1.9);
    row("two threads that share a source, per computation", "shareSource/threads:2", "shareSource/threads:1",
        1 / 1.3);
    limit("an update that is not due", "notDue", "ns", 40.0);
    limit("event to run, worker asleep, median", "eventToRun", "us", 30.0);
    limit("1,000 idle processes at 10 Hz, of one core", "idleProcesses/1000", "%", 5.0);
    limit("the same, their periods spread evenly", "idleSpreadProcesses/1000", "%", 5.0);
    return table.verdict(std::cout);
}
