#pragma once

#include <sys/time.h>

#include <cstdio>
#include <functional>
#include <string>

/// What the libraries ask of the operating system. Threads: all operations are thread-safe.
namespace rk::os {

/// The present time since the epoch, from the system or from the clock that `setClock` set.
/// Gives 0, or what that clock gives.
int gettimeofday(timeval* now);

/// Blocks the calling thread for a span of real time.
void msleep(unsigned milliseconds);

using Clock = std::function<int(timeval*)>;

/// Replaces the clock that `gettimeofday` reads, for replay and tests; an empty one restores the
/// system's. The clock may be read by several threads at once, and must not call `gettimeofday` or
/// `setClock` itself. It no longer runs once this returns.
void setClock(Clock clock);

/// Names the calling thread for debuggers and system monitors, cut to what the system takes.
void setCurrentThreadName(const std::string& name);

/// `std::fopen` for a path in UTF-8. Null and `errno` on failure.
std::FILE* fopen(const std::string& path, const char* mode);

} // namespace rk::os
