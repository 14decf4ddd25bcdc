#pragma once

#include "cli/picture.h"

#include <cstdint>
#include <memory>
#include <string>

namespace cli {

/// Where a value stands in a run: the number of its frame, from 0, and its time from the first one.
struct Moment
{
    std::uint64_t number;
    double seconds;
};

/// Takes the values of one sink to a file.
/// Threads: one thread at a time. Failure: a `Failure` that names the file and the remedy.
class Save
{
public:
    /// Creates the writer that fits the ending of `path`: a video (.avi, .mp4), numbered pictures
    /// (name-%04d.png) or text (.txt, .csv, .log). `sink` is for messages, `rate` is in frames per second.
    static std::unique_ptr<Save> open(const std::string& path, const std::string& sink, double rate);

    virtual ~Save() = default;

    /// Null is a frame without value.
    virtual void write(const Moment& moment, const DataPointer& value) = 0;

    /// Completes the file.
    virtual void finish() = 0;
};

} // namespace cli
