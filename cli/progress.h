#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace cli {

/// A bar on the terminal: frames done, frames per second, time left. Silent where the error output is no
/// terminal. Threads: one thread at a time.
class Progress
{
public:
    /// `total` is what there is to do, if that is known.
    Progress(std::optional<std::uint64_t> total, bool wanted);
    ~Progress() { clear(); }

    /// To be told after each frame; draws now and then.
    void show(std::uint64_t done);
    /// Takes the bar away, for other lines.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    void draw(std::uint64_t done, double seconds) const;

    const std::optional<std::uint64_t> _total;
    const bool _shown;
    const Clock::time_point _began = Clock::now();
    Clock::time_point _drawn; // when the bar was drawn last
    bool _visible = false;
};

} // namespace cli
