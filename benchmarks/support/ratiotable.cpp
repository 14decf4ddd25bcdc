#include "support/ratiotable.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

void RatioTable::ReportRuns(const std::vector<Run>& runs)
{
    benchmark::ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        std::string name = run.run_name.function_name;
        for (const std::string& part : {run.run_name.args, run.run_name.threads})
            name += part.empty() ? "" : "/" + part;
        const auto counter = run.counters.find("ns");
        const double figure =
            counter != run.counters.end() ? counter->second.value : run.GetAdjustedRealTime();
        const auto known = _least.emplace(name, figure).first;
        known->second = std::min(known->second, figure);
    }
}

namespace {

std::ostream& begin(std::ostream& out, const std::string& question, double figure)
{
    return out << std::left << std::setw(58) << question << std::right << std::fixed << std::setprecision(1)
               << std::setw(12) << figure;
}

bool end(std::ostream& out, double value, double target)
{
    const bool met = value <= target;
    out << std::setprecision(2) << std::setw(10) << target << (met ? "   met" : "   OVER") << "\n";
    return met;
}

} // namespace

bool RatioTable::row(std::ostream& out, const std::string& question, const std::string& name,
                     const std::string& peer, double target) const
{
    if (!has(name) || !has(peer))
        return true;
    const double ratio = figure(name) / figure(peer);
    begin(out, question, figure(name))
        << std::setw(12) << figure(peer) << std::setprecision(2) << std::setw(10) << ratio;
    return end(out, ratio, target);
}

bool RatioTable::limit(std::ostream& out, const std::string& question, const std::string& name,
                       const std::string& unit, double target) const
{
    if (!has(name))
        return true;
    begin(out, question, figure(name)) << std::setw(12) << unit << std::setw(10) << "";
    return end(out, figure(name), target);
}
