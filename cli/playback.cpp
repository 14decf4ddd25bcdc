#include "cli/playback.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace Type = ZR::Corvale::Type;

namespace {

// Microseconds from the first frame to another one.
long long offset(std::uint64_t frame, double rate)
{
    return std::llround(static_cast<double>(frame) * 1e6 / rate);
}

} // namespace

void Playback::add(const std::string& source, std::unique_ptr<Feed> feed)
{
    _tracks.push_back({source, std::move(feed)});
}

void Playback::addConstant(const std::string& source, const DataPointer& value)
{
    _constants.emplace_back(source, value);
}

double Playback::rate() const
{
    double fastest = 0.0;
    for (const Track& track : _tracks)
        fastest = std::max(fastest, track.feed->rate());
    return fastest > 0.0 ? fastest : _pictureRate;
}

Type::Duration Playback::timeOf(std::uint64_t frame) const
{
    return offset(frame, rate());
}

std::optional<std::uint64_t> Playback::length() const
{
    std::optional<std::uint64_t> shortest;
    for (const Track& track : _tracks)
        if (const std::optional<std::uint64_t> own = track.feed->length()) {
            const double ratio = track.feed->rate() > 0.0 ? rate() / track.feed->rate() : 1.0;
            const auto frames = static_cast<std::uint64_t>(std::ceil(static_cast<double>(*own) * ratio));
            shortest = std::min(frames, shortest.value_or(frames));
        }
    return shortest;
}

bool Playback::isEndless() const
{
    return std::all_of(_tracks.begin(), _tracks.end(),
                       [](const Track& track) { return track.feed->isEndless(); });
}

bool Playback::isDue(const Track& track, std::uint64_t frame) const
{
    const double own = track.feed->rate();
    return own <= 0.0 || offset(track.played, own) <= offset(frame, rate());
}

std::optional<Playback::Values> Playback::read(std::uint64_t frame, const Type::Time& timestamp)
{
    Values values = frame == 0 ? _constants : Values();
    for (Track& track : _tracks) {
        if (!isDue(track, frame))
            continue;
        const DataPointer value = track.feed->next(timestamp);
        if (!value)
            return std::nullopt;
        ++track.played;
        values.emplace_back(track.source, value);
    }
    return values;
}

} // namespace cli
