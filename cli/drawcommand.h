#pragma once

#include <string>

namespace CLI {
class App;
}

namespace cli {

/// `corvale draw`: shows a filter of a program as a graph, in the DOT language or as a picture.
class DrawCommand
{
public:
    /// Adds the command with its options to the command line's parser, which this object must outlive.
    explicit DrawCommand(CLI::App& app);
    DrawCommand(const DrawCommand&) = delete;
    DrawCommand& operator=(const DrawCommand&) = delete;

    /// Whether the command line names this command.
    bool chosen() const;
    /// Gives the exit code; throws `Failure`.
    int execute() const;

private:
    CLI::App& _command;
    std::string _program;
    std::string _filter;
    std::string _path; // empty for the standard output
    int _depth = 1;
};

} // namespace cli
