#pragma once

#include "cli/picture.h"

#include "corvale/data/datatime.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace cli {

/// A recording that gives a source its values, one a frame.
/// Threads: one thread at a time. Failure: a `Failure` that names the file and the remedy.
class Feed
{
public:
    /// Opens a video, a folder or a pattern of pictures (name-%04d.png, name-*.png), or one picture.
    static std::unique_ptr<Feed> open(const std::string& path);

    virtual ~Feed() = default;

    /// The next frame, stamped with the time given; null when the recording has ended.
    virtual DataPointer next(const ZR::Corvale::Type::Time& timestamp) = 0;

    /// Frames per second of the recording's own; 0 if it has none, as pictures.
    virtual double rate() const { return 0.0; }

    /// How many frames there are, by what the recording says; nothing if it does not say.
    virtual std::optional<std::uint64_t> length() const = 0;

    virtual bool isEndless() const { return false; }
};

} // namespace cli
