#include "cli/lockstep.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

namespace cli {

namespace Type = ZR::Corvale::Type;

void Lockstep::execute()
{
    for (std::uint64_t frame = 0; goesOn(frame); ++frame) {
        const Type::Duration offset = _playback.timeOf(frame);
        const Type::Time time = Type::Time(RecordingClock::Start) + offset;
        _clock.set(time);

        const std::optional<Playback::Values> values = _playback.read(frame, time);
        if (!values)
            return;
        feed(*values);
        compute();

        const Moment moment = {frame, static_cast<double>(offset.getTotalMicroseconds()) / 1e6};
        for (const auto& output : _outputs)
            output->write(moment, _engine.getLastData(output->sink()));
        checkOutputs();
        framePlayed();
    }
}

} // namespace cli
