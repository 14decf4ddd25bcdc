#pragma once

#include "rk/log.h"

#include <mutex>
#include <string>
#include <vector>

namespace support {

/// Collects every log line while it lives, and keeps the terminal silent. Captures may nest: the
/// innermost one gets the lines. Thread-safe.
class LogCapture
{
public:
    LogCapture()
        : _formerLevel(rk::log::setLevel(0)),
          _former(rk::log::setHandler([this](const rk::log::Record& record) {
              const std::lock_guard<std::mutex> lock(_mutex);
              _records.push_back(record);
          }))
    {
    }
    ~LogCapture()
    {
        rk::log::setHandler(_former);
        rk::log::setLevel(_formerLevel);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<rk::log::Record> records() const
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        return _records;
    }

    /// The texts in the order in which they came: of every level if it is 0, of every category if it is
    /// empty. Trailing blanks of a category carry no meaning.
    std::vector<std::string> messages(int level = 0, const std::string& category = "") const
    {
        std::vector<std::string> texts;
        for (const rk::log::Record& record : records())
            if ((level == 0 || record.level == level) &&
                (category.empty() || trimmed(record.category) == trimmed(category)))
                texts.push_back(record.message);
        return texts;
    }

    std::size_t count(int level = 0) const { return messages(level).size(); }

    void clear()
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _records.clear();
    }

private:
    static std::string trimmed(std::string text) { return text.erase(text.find_last_not_of(' ') + 1); }

    mutable std::mutex _mutex;
    std::vector<rk::log::Record> _records; // guarded by _mutex
    const int _formerLevel;
    const rk::log::Handler _former; // set last: lines come from here on
};

} // namespace support
