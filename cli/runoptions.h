#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// What a command line asks of `corvale run`.
struct RunOptions
{
    std::string program;
    std::vector<std::string> feeds;  // SOURCE=PATH or SOURCE=value:LITERAL
    std::vector<std::string> saves;  // PROCESS:SINK=PATH
    std::vector<std::string> prints; // PROCESS:SINK
    std::vector<std::string> counts; // PROCESS:SINK
    unsigned int threads = 2;        // of a live run
    std::optional<std::uint64_t> frames;
    double pictureRate = 10.0; // frames per second
    bool live = false;
    bool quiet = false;
};

/// The two sides of `NAME=PATH`; a `Failure` if one is missing. `option` is for the message.
std::pair<std::string, std::string> assignment(const std::string& text, const std::string& option);

/// Throws a `Failure` if a source is fed twice, or a file is written that is read or written already.
void requireDistinct(const RunOptions& options);

} // namespace cli
