#include "cli/run.h"

#include "cli/interrupt.h"
#include "cli/meters.h"
#include "cli/progress.h"

#include "corvale/engine/corvale.h"

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

void Run::checkOutputs() const
{
    for (const auto& output : _outputs)
        output->check();
}

} // namespace cli
