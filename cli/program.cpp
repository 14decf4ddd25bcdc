#include "cli/program.h"

#include "cli/failure.h"

#include "corvale/engine/corvale.h"

#include <boost/filesystem.hpp>

namespace cli {

void loadProgram(ZR::Corvale::Corvale& engine, const std::string& path)
{
    boost::system::error_code error;
    const boost::filesystem::file_status status = boost::filesystem::status(path, error);
    if (!is_regular_file(status))
        throw Failure("cannot read the program \"" + path +
                      "\": " + (exists(status) ? "it is no ordinary file" : "there is no such file") +
                      "; check its path");
    if (!engine.loadProgramFromFile(path))
        throw Failure("the program \"" + path + "\" does not load; the lines above say why", BadProgram);
}

} // namespace cli
