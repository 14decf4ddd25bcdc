#pragma once

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace ZR::Corvale {
class Corvale;
}

namespace cli {

/// Watches the sinks of all processes: how often each process computed, and how long after the frame was
/// there its sinks had their values.
///
/// A computation that leaves every sink without value is not seen: nothing tells of it.
/// Threads: thread-safe. Must outlive the engine's computations.
class Meters
{
public:
    using Clock = std::chrono::steady_clock;

    explicit Meters(ZR::Corvale::Corvale& engine);

    /// A new frame is about to be set.
    void frameBegins();

    /// A line for each process, in name order; `seconds` is the time that the run covers.
    std::string summary(double seconds) const;

private:
    struct Meter
    {
        std::string process;
        mutable std::mutex mutex;
        std::vector<std::uint64_t> counts; // by sink; guarded by mutex, as what follows
        std::uint64_t values = 0;
        Clock::duration sum{};
        Clock::duration worst{};
    };

    void note(Meter& meter, std::size_t sink);

    std::atomic<Clock::rep> _frameBegan;
    std::vector<std::unique_ptr<Meter>> _meters;
};

} // namespace cli
