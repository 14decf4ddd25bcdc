#include "cli/output.h"

#include <utility>

namespace cli {

Output::Output(const std::string& sink, std::unique_ptr<Save> save) : _sink(sink), _save(std::move(save)) {}

bool Output::used() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _values > 0;
}

void Output::write(const Moment& moment, const DataPointer& value)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    writeLocked(moment, value);
}

void Output::writeNext(double seconds, const DataPointer& value)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    writeLocked({_values, seconds}, value);
}

void Output::writeLocked(const Moment& moment, const DataPointer& value)
{
    if (_closed || _failure)
        return;
    try {
        _save->write(moment, value);
        if (value)
            ++_values;
    } catch (...) { // the thread that computes is not the one to hear of it
        _failure = std::current_exception();
    }
}

void Output::check() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    if (_failure)
        std::rethrow_exception(_failure);
}

void Output::finish()
{
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!std::exchange(_closed, true))
        _save->finish();
}

} // namespace cli
