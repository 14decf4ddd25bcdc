#pragma once

#include <string>

namespace ZR::Corvale {
class Corvale;
}

namespace cli {

/// Loads the program that a command line names. Failure: `Failure`; what the engine's log says stands above.
void loadProgram(ZR::Corvale::Corvale& engine, const std::string& path);

} // namespace cli
