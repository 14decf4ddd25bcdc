#pragma once

#include <cstdint>
#include <string>

namespace cli {

/// How many bytes of a video file are missing by what its own chunks declare: a copy that broke off, or a
/// disk that was full. 0 if it is whole, or of a format other than AVI and MP4, which nobody can tell.
/// Threads: thread-safe. Failure: a file that cannot be read counts as whole.
std::uint64_t missingBytes(const std::string& path);

} // namespace cli
