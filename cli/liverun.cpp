#include "cli/liverun.h"

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/text.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

namespace cli {

namespace Type = ZR::Corvale::Type;

namespace {

[[noreturn]] void endWithItsReason()
{
    std::string reason = "an unknown fault";
    try {
        if (const std::exception_ptr fault = std::current_exception())
            std::rethrow_exception(fault);
    } catch (const std::exception& error) {
        reason = firstLine(error.what());
    } catch (...) {
    }
    std::fprintf(stderr, "corvale: a process failed: %s\n", reason.c_str());
    std::_Exit(BadInput);
}

} // namespace

void LiveRun::execute()
{
    std::set_terminate(endWithItsReason);
    const Clock::time_point began = Clock::now();
    const Type::Time start = Type::Time::now();
    listen(began);

    for (std::uint64_t frame = 0; goesOn(frame); ++frame) {
        const Type::Duration offset = _playback.timeOf(frame);
        const std::optional<Playback::Values> values = _playback.read(frame, start + offset);
        if (!values)
            break;
        if (!waitUntil(began + std::chrono::microseconds(offset.getTotalMicroseconds())))
            break;
        feed(*values);
        framePlayed();
    }

    // The last frame has its time too; what no worker has come to by then is computed here.
    const Type::Duration frameTime = _playback.timeOf(1);
    waitUntil(Clock::now() +
              std::max<Clock::duration>(longestPeriod(),
                                        std::chrono::microseconds(frameTime.getTotalMicroseconds())));
    _engine.stopScheduler();
    if (interrupt::signal() == 0)
        compute();
    checkOutputs();
}

// A frame that comes just when a process has looked at its sources is computed twice: its value counts once.
void LiveRun::listen(Clock::time_point began) const
{
    for (const auto& output : _outputs)
        _engine.createEvent(output->sink(), [&output = *output, began,
                                             last = DataPointer()](const DataPointer& value) mutable {
            if (value != last)
                output.writeNext(std::chrono::duration<double>(Clock::now() - began).count(), value);
            last = value;
        });
}

// In short pieces, so that the user's request to end and a failed write are soon seen. False on the former.
bool LiveRun::waitUntil(Clock::time_point moment) const
{
    constexpr std::chrono::milliseconds piece(50);
    for (Clock::time_point now = Clock::now(); now < moment; now = Clock::now()) {
        if (interrupt::signal() != 0)
            return false;
        checkOutputs();
        std::this_thread::sleep_for(std::min<Clock::duration>(piece, moment - now));
    }
    return true;
}

// Of the processes that compute at least every other second.
LiveRun::Clock::duration LiveRun::longestPeriod() const
{
    constexpr double least = 0.5;
    double slowest = 1e6;
    for (const std::string& process : _engine.getProcesses())
        if (const double frequency = _engine.getProcessFrequency(process); frequency >= least)
            slowest = std::min(slowest, frequency);
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / slowest));
}

} // namespace cli
