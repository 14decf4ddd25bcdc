#pragma once

namespace cli {

/// Ctrl-C and a request to terminate, seen as a flag: the run ends where it stands and finishes its files.
/// A second one ends the program at once. Threads: thread-safe.
namespace interrupt {

/// Begins to watch; also makes a closed pipe an ordinary error of writing.
void watch();

/// The signal that asked the run to end, 0 if none did.
int signal();

} // namespace interrupt

} // namespace cli
