#pragma once

#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace support {

/// The bytes of this process that lie in memory.
inline std::size_t residentBytes()
{
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

inline std::ptrdiff_t entriesOf(const char* folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return std::distance(begin(entries), end(entries));
}

/// The file descriptors that this process has open, and the one that the question itself takes.
inline std::ptrdiff_t openFiles()
{
    return entriesOf("/proc/self/fd");
}

inline std::ptrdiff_t livingThreads()
{
    return entriesOf("/proc/self/task");
}

} // namespace support
