#include "cli/run.h"

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "cli/meters.h"
#include "cli/progress.h"
#include "cli/text.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "rk/log.h"

namespace cli {

Run::Run(ZR::Corvale::Corvale& engine, Playback& playback, const Outputs& outputs, Meters& meters,
         Progress& progress, std::uint64_t frames)
    : _engine(engine),
      _playback(playback),
      _outputs(outputs),
      _meters(meters),
      _progress(progress),
      _frames(frames)
{
}

bool Run::goesOn(std::uint64_t frame) const
{
    return frame < _frames && interrupt::signal() == 0;
}

void Run::feed(const Playback::Values& values)
{
    _meters.frameBegins();
    for (const auto& [source, value] : values)
        _engine.setData(source, value);
}

void Run::framePlayed()
{
    _progress.show(++_played);
}

void Run::compute() const
{
    for (const std::string& sink : sinkOfEachProcess()) {
        try {
            _engine.getData(sink);
        } catch (const std::exception& error) {
            // Nodes that are left in the middle of a computation complain when they end: not the cause.
            rk::log::setLevel(0);
            throw Failure("frame " + std::to_string(_played) + ": the process of \"" + sink +
                          "\" failed: " + firstLine(error.what()));
        }
    }
}

// Any one will do: to ask for a sink computes its whole process.
std::vector<std::string> Run::sinkOfEachProcess() const
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

void Run::checkOutputs() const
{
    for (const auto& output : _outputs)
        output->check();
}

} // namespace cli
