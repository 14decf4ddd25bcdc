#pragma once

#include "cli/meters.h"
#include "cli/playback.h"
#include "cli/recordingclock.h"
#include "cli/run.h"
#include "cli/runoptions.h"

#include <memory>
#include <optional>

namespace cli {

/// One `corvale run` from its options to its summary. The steps in order:
///
///     open recordings, load the program, set constants, open outputs, play, finish outputs, sum up
///
/// Threads: one thread at a time.
class RunJob
{
public:
    explicit RunJob(const RunOptions& options);
    ~RunJob();

    /// Gives the exit code; throws `Failure`. What was written until then is complete.
    int execute();

private:
    void openRecordings();
    void loadProgram();
    void setConstants();
    void openOutputs();
    void play();
    void finishOutputs();
    void sumUp() const;
    std::uint64_t frameLimit() const;

    const RunOptions _options;
    Playback _playback;
    std::optional<RecordingClock> _clock; // in lockstep
    Outputs _outputs;
    std::unique_ptr<Meters> _meters;
    std::unique_ptr<Progress> _progress;
    std::unique_ptr<ZR::Corvale::Corvale> _engine; // ends first: its workers use what stands above
    std::unique_ptr<Run> _run;
    double _seconds = 0.0; // real time of the run
};

} // namespace cli
