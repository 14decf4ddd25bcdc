#pragma once

#include "corvale/data/datatime.h"

#include <atomic>

namespace cli {

/// The clock of a lockstep run: while it lives, the libraries' time stands still between calls of `set`.
/// Threads: thread-safe. One at a time.
class RecordingClock
{
public:
    /// The time of the first frame. It is far from zero, where a process counts as never computed: so one
    /// of any frequency is due at the first frame.
    static constexpr long long Start = 1'000'000'000'000'000; // microseconds since the epoch

    RecordingClock();
    ~RecordingClock();
    RecordingClock(const RecordingClock&) = delete;
    RecordingClock& operator=(const RecordingClock&) = delete;

    void set(const ZR::Corvale::Type::Time& time) { _microseconds = time.getTotalMicroseconds(); }

private:
    std::atomic<long long> _microseconds{Start};
};

} // namespace cli
