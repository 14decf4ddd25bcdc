#include "cli/recordingclock.h"

#include "rk/os.h"

namespace cli {

RecordingClock::RecordingClock()
{
    rk::os::setClock([this](timeval* now) {
        const long long time = _microseconds;
        now->tv_sec = time / 1'000'000;
        now->tv_usec = time % 1'000'000;
        return 0;
    });
}

RecordingClock::~RecordingClock()
{
    rk::os::setClock({});
}

} // namespace cli
