#pragma once

#include "cli/run.h"

#include <chrono>

namespace cli {

/// Lets the engine's workers compute while frames come at the recording's own rate. Sinks are read through
/// events: a value is written when it is computed, on the thread that computes it, and numbered in turn.
///
/// A filter that throws ends a worker and with it the program: then the line that says so is the last.
class LiveRun : public Run
{
public:
    using Run::Run;

    void execute() override;

private:
    using Clock = std::chrono::steady_clock;

    void listen(Clock::time_point began) const;
    bool waitUntil(Clock::time_point moment) const;
    Clock::duration longestPeriod() const;
};

} // namespace cli
