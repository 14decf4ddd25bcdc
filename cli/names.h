#pragma once

#include <string>

namespace ZR::Corvale {
class Corvale;
}

namespace cli {

// The names that a command line gives must be those of the loaded program: else a `Failure` that lists
// what there is.

/// A global source, or a local one as "process:source".
void requireSource(const ZR::Corvale::Corvale& engine, const std::string& name);

/// A sink or an aggregated one as "process:sink".
void requireSink(const ZR::Corvale::Corvale& engine, const std::string& name);

} // namespace cli
