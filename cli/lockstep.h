#pragma once

#include "cli/recordingclock.h"
#include "cli/run.h"

namespace cli {

/// Computes in this thread, a frame at a time, in the recording's own time: every run gives the same.
///
///     each frame:  clock --> sources --> every process once, in name order --> wanted sinks
///
/// The engine has no workers. A `RecordingClock` must be there before the program is loaded.
class Lockstep : public Run
{
public:
    template <typename... Parts>
    explicit Lockstep(RecordingClock& clock, Parts&&... parts)
        : Run(std::forward<Parts>(parts)...),
          _clock(clock)
    {
    }

    void execute() override;

private:
    RecordingClock& _clock;
};

} // namespace cli
