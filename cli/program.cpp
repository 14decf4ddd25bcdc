#include "cli/program.h"

#include "cli/failure.h"

#include "corvale/engine/corvale.h"

#include <boost/filesystem.hpp>

namespace cli {

void loadProgram(ZR::Corvale::Corvale& engine, const std::string& path)
{
    boost::system::error_code error;
    if (!boost::filesystem::is_regular_file(path, error))
        throw Failure("cannot read the program \"" + path + "\": there is no such file; check its path");
    if (!engine.loadProgramFromFile(path))
        throw Failure("the program \"" + path + "\" does not load; the lines above say why", BadProgram);
}

} // namespace cli
