#include "cli/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace cli {

namespace {

std::string clockText(double seconds)
{
    const auto whole = static_cast<long long>(std::ceil(seconds));
    char text[64];
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

} // namespace

Progress::Progress(std::optional<std::uint64_t> total, bool wanted)
    : _total(total),
      _shown(wanted && isatty(STDERR_FILENO) != 0)
{
}

void Progress::show(std::uint64_t done)
{
    constexpr auto pause = std::chrono::milliseconds(100);
    const Clock::time_point now = Clock::now();
    if (!_shown || (_visible && now - _drawn < pause && done != _total))
        return;
    _drawn = now;
    _visible = true;
    draw(done, std::chrono::duration<double>(now - _began).count());
}

void Progress::draw(std::uint64_t done, double seconds) const
{
    const double speed = seconds > 0.0 ? static_cast<double>(done) / seconds : 0.0;
    std::string line = "\033[K";
    if (_total && *_total > 0) {
        constexpr std::size_t width = 30;
        const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(*_total));
        const auto filled = static_cast<std::size_t>(share * width);
        line += "[" + std::string(filled, '=') + std::string(width - filled, ' ') + "] ";
    }
    line += std::to_string(done) + (_total ? "/" + std::to_string(*_total) : "") + " frames  " +
            std::to_string(std::lround(speed)) + " per second";
    if (_total && speed > 0.0)
        line += "  " +
                clockText(std::max(0.0, static_cast<double>(*_total) - static_cast<double>(done)) / speed) +
                " left";
    // The cursor goes back to the front, so that a log line takes the bar's place.
    std::fputs((line + "\r").c_str(), stderr);
    std::fflush(stderr);
}

void Progress::clear()
{
    if (!_visible)
        return;
    _visible = false;
    std::fputs("\033[K", stderr);
    std::fflush(stderr);
}

} // namespace cli
