#pragma once

#include "cli/feed.h"

#include "corvale/data/datatime.h"

#include <string>
#include <utility>
#include <vector>

namespace cli {

/// The recordings of a run, played side by side.
///
/// Time goes in frames of the fastest recording; a slower one keeps its frame until the next is due, so
/// that none is left out. Pictures, which have no rate of their own, change with every frame.
/// Threads: one thread at a time.
class Playback
{
public:
    using Values = std::vector<std::pair<std::string, DataPointer>>;

    /// `pictureRate` is in frames per second, for when no recording has a rate of its own.
    explicit Playback(double pictureRate) : _pictureRate(pictureRate) {}

    void add(const std::string& source, std::unique_ptr<Feed> feed);
    /// A value that is set once, with the first frame.
    void addConstant(const std::string& source, const DataPointer& value);

    /// Frames per second.
    double rate() const;
    /// From the first frame to the one of this number.
    ZR::Corvale::Type::Duration timeOf(std::uint64_t frame) const;
    /// How many frames there are until the shortest recording ends; nothing if none says.
    std::optional<std::uint64_t> length() const;
    /// Whether no recording ever ends.
    bool isEndless() const;

    /// What the sources get with a frame, each by its name; frames come in order. Nothing when a recording
    /// has ended.
    std::optional<Values> read(std::uint64_t frame, const ZR::Corvale::Type::Time& timestamp);

private:
    struct Track
    {
        std::string source;
        std::unique_ptr<Feed> feed;
        std::uint64_t played = 0;
    };

    bool isDue(const Track& track, std::uint64_t frame) const;

    const double _pictureRate;
    std::vector<Track> _tracks;
    Values _constants;
};

} // namespace cli
