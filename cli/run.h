#pragma once

#include "cli/output.h"
#include "cli/playback.h"

#include <memory>
#include <vector>

namespace ZR::Corvale {
class Corvale;
}

namespace cli {

class Meters;
class Progress;

using Outputs = std::vector<std::unique_ptr<Output>>;

/// One way of playing recordings through a program. It uses what it is given and owns nothing of it.
/// Threads: one thread at a time.
class Run
{
public:
    /// `frames` is the number after which the run ends, if the recordings do not end before.
    Run(ZR::Corvale::Corvale& engine, Playback& playback, const Outputs& outputs, Meters& meters,
        Progress& progress, std::uint64_t frames);
    virtual ~Run() = default;

    /// Plays to the end, or until the user ends it. Throws `Failure`, and `Stopped` when nobody reads
    /// what it prints.
    virtual void execute() = 0;

    std::uint64_t framesPlayed() const { return _played; }

protected:
    /// Whether the frame with this number is still to be played.
    bool goesOn(std::uint64_t frame) const;
    /// Gives the sources the values of a frame.
    void feed(const Playback::Values& values);
    void framePlayed();
    /// Looks at every enabled process once, in name order, in this thread: those compute that are due.
    void compute() const;
    void checkOutputs() const;

    ZR::Corvale::Corvale& _engine;
    Playback& _playback;
    const Outputs& _outputs;

private:
    std::vector<std::string> sinkOfEachProcess() const;

    Meters& _meters;
    Progress& _progress;
    const std::uint64_t _frames;
    std::uint64_t _played = 0;
};

} // namespace cli
