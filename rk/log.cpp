#include "rk/log.h"

#include <spdlog/details/log_msg.h>
#include <spdlog/sinks/stdout_color_sinks.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <locale>
#include <memory>
#include <mutex>
#include <utility>

namespace rk::log {

namespace {

// Constant initialisation: sources register their categories at load, in any order.
std::atomic<int> shownLevel{Info};
std::atomic<std::size_t> widestCategory{0};

// True on a thread while it is inside the observer.
thread_local bool observing = false;

struct LevelName
{
    spdlog::level::level_enum colour;
    const char* text;
};

LevelName levelName(int level)
{
    static constexpr std::array<LevelName, 6> names{{{spdlog::level::critical, "fatal  "},
                                                     {spdlog::level::err, "error  "},
                                                     {spdlog::level::warn, "warning"},
                                                     {spdlog::level::info, "info   "},
                                                     {spdlog::level::debug, "verbose"},
                                                     {spdlog::level::trace, "debug  "}}};
    return names[std::clamp<int>(level, Fatal, Debug) - Fatal];
}

void writeToTerminal(int level, const std::string& category, const std::string& message)
{
    // Never destroyed: the destructors of static objects may still log.
    static spdlog::sinks::sink& terminal = *[] {
        auto* sink = new spdlog::sinks::stderr_color_sink_mt;
        sink->set_pattern("%T.%e %^%n%$  %v");
        return sink;
    }();

    const LevelName name = levelName(level);
    std::string tag = std::string(name.text) + "  " + category;
    const std::size_t widest = widestCategory;
    tag.append(widest - std::min(widest, category.size()), ' ');
    terminal.log(spdlog::details::log_msg(tag, name.colour, message));
}

// The observer and the calls that are under way to it.
class Observation
{
public:
    // Never destroyed, as the terminal.
    static Observation& instance()
    {
        static Observation& observation = *new Observation;
        return observation;
    }

    Handler replace(Handler handler)
    {
        const auto next = handler ? std::make_shared<Observer>(Observer{std::move(handler), 0}) : nullptr;
        std::unique_lock<std::mutex> lock(_mutex);
        const std::shared_ptr<Observer> former = std::exchange(_observer, next);
        _observed = next != nullptr;
        if (!former)
            return {};
        if (!observing)
            _returned.wait(lock, [&former] { return former->calls == 0; });
        return former->handler;
    }

    void tell(const Record& record)
    {
        const std::shared_ptr<Observer> observer = enter();
        if (!observer)
            return;
        observing = true;
        try {
            observer->handler(record);
        } catch (...) { // a line is written from destructors too
        }
        observing = false;
        const std::lock_guard<std::mutex> lock(_mutex);
        if (--observer->calls == 0)
            _returned.notify_all();
    }

    bool observed() const { return _observed && !observing; }

private:
    struct Observer
    {
        Handler handler;
        int calls;
    };

    std::shared_ptr<Observer> enter()
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (_observer)
            ++_observer->calls;
        return _observer;
    }

    std::atomic<bool> _observed{false};

    std::mutex _mutex;
    std::condition_variable _returned;
    std::shared_ptr<Observer> _observer; // it and its count are guarded by _mutex
};

} // namespace

std::string addCategory(const std::string& name)
{
    std::size_t widest = widestCategory;
    while (widest < name.size() && !widestCategory.compare_exchange_weak(widest, name.size())) {
    }
    return name;
}

// A line is not worth the work that it tells of, and destructors write lines too.
void log(int level, const std::string& category, const std::string& message, const char* file,
         const char* function, int line)
{
    try {
        if (level <= shownLevel)
            writeToTerminal(level, category, message);
    } catch (...) {
    }
    try {
        Observation& observation = Observation::instance();
        if (observation.observed())
            observation.tell({level, category, message, file ? file : "", function ? function : "", line});
    } catch (...) {
    }
}

Handler setHandler(Handler handler)
{
    return Observation::instance().replace(std::move(handler));
}

int setLevel(int level)
{
    return shownLevel.exchange(level);
}

LogStream::LogStream(int level, const std::string& category, const char* file, const char* function, int line)
    : _level(level),
      _file(file),
      _function(function),
      _line(line)
{
    try {
        _category = category;
    } catch (...) { // no memory: the line has no category
    }
    _message.imbue(std::locale::classic()); // the same text whatever locale the host sets
}

LogStream::~LogStream()
{
    try {
        log(_level, _category, _message.str(), _file, _function, _line);
    } catch (...) { // no memory for the text
    }
}

} // namespace rk::log
