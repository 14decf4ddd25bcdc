#pragma once

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

/// Shows benchmarks as usual and keeps the least figure of each, so that two of one run can be compared.
///
/// The figure is the counter "ns" where a benchmark sets it (nanoseconds per node, computation or event),
/// otherwise its time per iteration: that of its thread, which a busy machine disturbs less, or the real one
/// where it asks for that; a counter whose name begins with a slash is a figure of its own,
/// "rate/100/error" for the counter "/error". Of several repetitions the least counts: what else the
/// machine does only ever adds.
class RatioTable : public benchmark::ConsoleReporter
{
public:
    enum class Detail
    {
        EachRun,
        TableOnly
    };

    explicit RatioTable(Detail detail = Detail::EachRun) : _detail(detail) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    bool has(const std::string& name) const { return _least.count(name) != 0; }
    /// The figure of a benchmark by its name, arguments and threads, e.g. "chain/10" or "chain/threads:2".
    double figure(const std::string& name) const { return _least.at(name); }

    /// One row: a figure, the figure that it is held against, their ratio and the target; true if it is
    /// met. Nothing, and true, if one of the two was not run.
    bool row(std::ostream& out, const std::string& question, const std::string& name, const std::string& peer,
             double target);
    /// One row of a figure against a limit in the figure's own unit.
    bool limit(std::ostream& out, const std::string& question, const std::string& name,
               const std::string& unit, double target);
    /// Ends a row that others have begun: the target, whether it is met, and a remark if it is not.
    bool end(std::ostream& out, const std::string& question, bool met, double target,
             const std::string& remark = "");

    /// Names the rows over target and gives the exit code: 1 if there are any.
    int verdict(std::ostream& out) const;

private:
    const Detail _detail;
    std::map<std::string, double> _least;
    std::vector<std::string> _over; // questions
};
