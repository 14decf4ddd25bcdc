#pragma once

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <string>

/// Shows benchmarks as usual and keeps the least figure of each, so that two of one run can be compared.
///
/// The figure is the counter "ns" where a benchmark sets it (nanoseconds per node, computation or event),
/// otherwise its real time per iteration. Of several repetitions the least counts: what else the
/// machine does only ever adds.
class RatioTable : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    bool has(const std::string& name) const { return _least.count(name) != 0; }
    /// The figure of a benchmark by its name, arguments and threads, e.g. "chain/10" or "chain/threads:2".
    double figure(const std::string& name) const { return _least.at(name); }

    /// One row: a figure, the figure that it is held against, their ratio and the target; true if it is
    /// met. Nothing, and true, if one of the two was not run.
    bool row(std::ostream& out, const std::string& question, const std::string& name, const std::string& peer,
             double target) const;
    /// One row of a figure against a limit in the figure's own unit.
    bool limit(std::ostream& out, const std::string& question, const std::string& name,
               const std::string& unit, double target) const;

private:
    std::map<std::string, double> _least;
};
