#include "cli/lockstep.h"

#include "cli/failure.h"
#include "cli/text.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "rk/log.h"

namespace cli {

namespace Type = ZR::Corvale::Type;

void Lockstep::execute()
{
    const std::vector<std::string> sinks = sinkOfEachProcess();
    for (std::uint64_t frame = 0; goesOn(frame); ++frame) {
        const Type::Duration offset = _playback.timeOf(frame);
        const Type::Time time = Type::Time(RecordingClock::Start) + offset;
        _clock.set(time);

        const std::optional<Playback::Values> values = _playback.read(frame, time);
        if (!values)
            return;
        feed(*values);
        for (const std::string& sink : sinks)
            compute(sink, frame);

        const Moment moment = {frame, static_cast<double>(offset.getTotalMicroseconds()) / 1e6};
        for (const auto& output : _outputs)
            output->write(moment, _engine.getLastData(output->sink()));
        checkOutputs();
        framePlayed();
    }
}

// Any one will do: to ask for a sink computes its whole process.
std::vector<std::string> Lockstep::sinkOfEachProcess() const
{
    std::vector<std::string> sinks;
    for (const std::string& process : _engine.getProcesses()) {
        const std::vector<std::string> own = _engine.getProcessSinks(process);
        // A colon in its name makes the sinks of a process unreachable.
        if (_engine.isProcessEnable(process) && !own.empty() && process.find(':') == std::string::npos)
            sinks.push_back(process + ":" + own.front());
    }
    return sinks;
}

void Lockstep::compute(const std::string& sink, std::uint64_t frame)
{
    try {
        _engine.getData(sink);
    } catch (const std::exception& error) {
        // Nodes that are left in the middle of a computation complain when they end: not the cause.
        rk::log::setLevel(0);
        throw Failure("frame " + std::to_string(frame) + ": the process of \"" + sink +
                      "\" failed: " + firstLine(error.what()));
    }
}

} // namespace cli
