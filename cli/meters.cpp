#include "cli/meters.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"

#include <algorithm>
#include <cstdio>

namespace cli {

using ZR::Corvale::Data;

namespace {

double milliseconds(Meters::Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

} // namespace

Meters::Meters(ZR::Corvale::Corvale& engine) : _frameBegan(Clock::now().time_since_epoch().count())
{
    for (const std::string& process : engine.getProcesses()) {
        const std::vector<std::string> sinks = engine.getProcessSinks(process);
        _meters.push_back(std::make_unique<Meter>());
        Meter& meter = *_meters.back();
        meter.process = process;
        meter.counts.resize(sinks.size());
        for (std::size_t sink = 0; sink < sinks.size(); ++sink)
            engine.createEvent(process + ":" + sinks[sink],
                               [this, &meter, sink](const boost::shared_ptr<Data>&) { note(meter, sink); });
    }
}

void Meters::frameBegins()
{
    _frameBegan = Clock::now().time_since_epoch().count();
}

void Meters::note(Meter& meter, std::size_t sink)
{
    const Clock::duration delay = Clock::now().time_since_epoch() - Clock::duration(_frameBegan);
    const std::lock_guard<std::mutex> lock(meter.mutex);
    ++meter.counts[sink];
    ++meter.values;
    meter.sum += delay;
    meter.worst = std::max(meter.worst, delay);
}

std::string Meters::summary(double seconds) const
{
    std::size_t widest = 0;
    for (const auto& meter : _meters)
        widest = std::max(widest, meter->process.size());

    std::string text;
    for (const auto& meter : _meters) {
        const std::lock_guard<std::mutex> lock(meter->mutex);
        const auto most = std::max_element(meter->counts.begin(), meter->counts.end());
        const auto computations = static_cast<unsigned long long>(most == meter->counts.end() ? 0 : *most);
        const double values = static_cast<double>(std::max<std::uint64_t>(1, meter->values));
        char figures[160];
        std::snprintf(figures, sizeof figures,
                      "  %6llu computations with a value  %7.2f per second  frame to sink %8.3f ms mean "
                      "%8.3f ms worst\n",
                      computations, seconds > 0.0 ? static_cast<double>(computations) / seconds : 0.0,
                      milliseconds(meter->sum) / values, milliseconds(meter->worst));
        text += meter->process + std::string(widest - meter->process.size(), ' ') + figures;
    }
    return text;
}

} // namespace cli
