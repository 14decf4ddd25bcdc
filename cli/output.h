#pragma once

#include "cli/save.h"

#include <exception>
#include <mutex>

namespace cli {

/// One sink that is saved or printed.
///
/// Threads: thread-safe; a live run writes from the threads that compute, so that a slow disk slows the
/// run down instead of filling the memory.
/// Failure: the first one is kept for `check`, and nothing is written after it.
class Output
{
public:
    Output(const std::string& sink, std::unique_ptr<Save> save);

    const std::string& sink() const { return _sink; }
    /// Whether a value has come.
    bool used() const;
    void write(const Moment& moment, const DataPointer& value);
    /// Writes with the number of the values that came before.
    void writeNext(double seconds, const DataPointer& value);
    /// Throws what went wrong in a `write`.
    void check() const;
    /// Completes the file; nothing is written after it. Throws what goes wrong.
    void finish();

private:
    void writeLocked(const Moment& moment, const DataPointer& value); // caller holds _mutex

    const std::string _sink;

    mutable std::mutex _mutex;
    const std::unique_ptr<Save> _save; // used under _mutex
    std::uint64_t _values = 0;         // guarded by _mutex
    bool _closed = false;              // guarded by _mutex
    std::exception_ptr _failure;       // guarded by _mutex
};

} // namespace cli
