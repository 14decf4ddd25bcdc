#pragma once

#include <string>

/// Where data files lie. Threads: all operations are thread-safe.
namespace rk::path {

/// The first existing of: `file` itself if it is absolute; DIR/`application`/`file` for each added
/// directory in the order in which they were added, then for the user's and the system's data
/// directories (XDG base directories). Empty if there is none.
std::string findData(const std::string& application, const std::string& file);

/// Adds a directory that `findData` looks in before the user's and the system's.
void addDataPath(const std::string& directory);

} // namespace rk::path
