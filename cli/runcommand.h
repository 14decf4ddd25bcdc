#pragma once

#include "cli/runoptions.h"

namespace CLI {
class App;
}

namespace cli {

/// `corvale run`: plays recordings through a program.
class RunCommand
{
public:
    /// Adds the command with its options to the command line's parser, which this object must outlive.
    explicit RunCommand(CLI::App& app);
    RunCommand(const RunCommand&) = delete;
    RunCommand& operator=(const RunCommand&) = delete;

    /// Whether the command line names this command.
    bool chosen() const;
    /// Gives the exit code; throws `Failure`.
    int execute() const;

private:
    CLI::App& _command;
    RunOptions _options;
};

} // namespace cli
