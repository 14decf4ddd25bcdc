#include "cli/runcommand.h"

#include "cli/runjob.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace cli {

RunCommand::RunCommand(CLI::App& app)
    : _command(*app.add_subcommand("run", "Play recordings through a program"))
{
    _command.add_option("PROGRAM", _options.program, "The program's file (.fgs, .txt)")->required();
    _command
        .add_option("--feed", _options.feeds,
                    "What a source gets: a video; a folder or a pattern of pictures (name-%04d.png, "
                    "name-*.png); one picture, repeated; or value:LITERAL. Write PROCESS:SOURCE for a "
                    "source inside a process")
        ->type_name("SOURCE=PATH");
    _command
        .add_option("--save", _options.saves,
                    "Where a sink goes: a video (.avi, .mp4), numbered pictures (name-%04d.png) or a "
                    "text (.txt, .csv, .log)")
        ->type_name("PROCESS:SINK=PATH");
    _command.add_option("--print", _options.prints, "Print a sink: frame, seconds, value")
        ->type_name("PROCESS:SINK");
    _command
        .add_option("--count", _options.counts, "Print how long a sink's list is: frame, seconds, length")
        ->type_name("PROCESS:SINK");
    _command.add_option("--threads", _options.threads, "Worker threads of a live run")
        ->check(CLI::Range(1u, 256u))
        ->capture_default_str();
    _command
        .add_option("--frames", _options.frames,
                    "End after N frames; else when a recording ends, after one if none does")
        ->type_name("N")
        ->check(CLI::Range(1.0, 1e15));
    _command.add_option("--rate", _options.pictureRate, "Frames per second of pictures, if no video is fed")
        ->check(CLI::Range(0.001, 100000.0))
        ->capture_default_str();
    _command.add_flag("--live", _options.live,
                      "Compute on worker threads while frames come at the recording's own rate; else in "
                      "lockstep, a frame at a time, the same in every run");
    _command.add_flag("--quiet", _options.quiet, "No progress, no summary, only errors");
}

bool RunCommand::chosen() const
{
    return _command.parsed();
}

int RunCommand::execute() const
{
    return RunJob(_options).execute();
}

} // namespace cli
