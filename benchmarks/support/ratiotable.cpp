#include "support/ratiotable.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

bool RatioTable::ReportContext(const Context& context)
{
    return _detail == Detail::TableOnly || benchmark::ConsoleReporter::ReportContext(context);
}

void RatioTable::ReportRuns(const std::vector<Run>& runs)
{
    if (_detail == Detail::EachRun)
        benchmark::ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        std::string name = run.run_name.function_name;
        for (const std::string& part : {run.run_name.args, run.run_name.threads})
            name += part.empty() ? "" : "/" + part;
        const auto counter = run.counters.find("ns");
        const bool realTime = run.run_name.time_type == "real_time";
        const double time = realTime ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
        const double figure = counter != run.counters.end() ? counter->second.value : time;
        const auto note = [&](const std::string& of, double value) {
            const auto known = _least.emplace(of, value).first;
            known->second = std::min(known->second, value);
        };
        note(name, figure);
        for (const auto& [suffix, value] : run.counters)
            if (suffix.front() == '/')
                note(name + suffix, value);
    }
}

namespace {

std::ostream& begin(std::ostream& out, const std::string& question, double figure)
{
    return out << std::left << std::setw(58) << question << std::right << std::fixed << std::setprecision(1)
               << std::setw(12) << figure;
}

} // namespace

bool RatioTable::row(std::ostream& out, const std::string& question, const std::string& name,
                     const std::string& peer, double target)
{
    if (!has(name) || !has(peer))
        return true;
    const double ratio = figure(name) / figure(peer);
    begin(out, question, figure(name))
        << std::setw(12) << figure(peer) << std::setprecision(2) << std::setw(10) << ratio;
    return end(out, question, ratio <= target, target);
}

bool RatioTable::limit(std::ostream& out, const std::string& question, const std::string& name,
                       const std::string& unit, double target)
{
    if (!has(name))
        return true;
    begin(out, question, figure(name)) << std::setw(12) << unit << std::setw(10) << "";
    return end(out, question, figure(name) <= target, target);
}

bool RatioTable::end(std::ostream& out, const std::string& question, bool met, double target,
                     const std::string& remark)
{
    out << std::setprecision(2) << std::setw(10) << target << (met ? "   met" : "   OVER" + remark) << "\n";
    if (!met)
        _over.push_back(question + remark);
    return met;
}

int RatioTable::verdict(std::ostream& out) const
{
    if (_over.empty()) {
        out << "\nAll rows meet their targets.\n";
        return 0;
    }
    out << "\nOver target:\n";
    for (const std::string& question : _over)
        out << "  " << question << "\n";
    return 1;
}
