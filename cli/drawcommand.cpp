#include "cli/drawcommand.h"

#include "cli/failure.h"
#include "cli/graphviz.h"
#include "cli/outputfile.h"
#include "cli/program.h"
#include "cli/text.h"

#include "corvale/engine/corvale.h"
#include "rk/log.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <iterator>

namespace cli {

namespace {

using Names = std::vector<std::string>;

// The format in which a path wants the picture, empty for the text itself.
std::string formatOf(const std::string& path)
{
    const std::string ending = boost::filesystem::path(path).extension().string();
    if (ending == ".png" || ending == ".svg")
        return ending.substr(1);
    if (path.empty() || ending == ".dot")
        return "";
    throw Failure("cannot draw to \"" + path + "\": give a picture (.png, .svg) or a text (.dot)");
}

} // namespace

DrawCommand::DrawCommand(CLI::App& app)
    : _command(*app.add_subcommand("draw", "Show a filter of a program as a graph"))
{
    _command.add_option("PROGRAM", _program, "The program's file (.fgs, .txt)")->required();
    _command.add_option("COMPOSITE", _filter, "The name of the filter")->required();
    _command.add_option("--depth", _depth, "How many levels to open; all if negative")
        ->type_name("N")
        ->capture_default_str();
    _command
        .add_option("-o", _path, "A picture (.png, .svg) or a text in the DOT language (.dot); else printed")
        ->type_name("FILE");
}

bool DrawCommand::chosen() const
{
    return _command.parsed();
}

int DrawCommand::execute() const
{
    rk::log::setLevel(rk::log::Error);
    const std::string format = formatOf(_path);
    ZR::Corvale::Corvale engine(0);
    const Names builtIn = engine.getFilters();
    loadProgram(engine, _program);
    if (!engine.isFilter(_filter)) {
        Names own;
        const Names all = engine.getFilters();
        std::set_difference(all.begin(), all.end(), builtIn.begin(), builtIn.end(), std::back_inserter(own));
        throw Failure("there is no filter \"" + _filter + "\"; the program's filters: " + listed(own));
    }

    const std::string text = engine.dumpFilter(_filter, _depth);
    const std::string picture = format.empty() ? text : drawnByDot(text, format);
    OutputFile file = _path.empty() ? OutputFile::standardOutput() : OutputFile(_path);
    file.write(picture);
    file.close();
    return Success;
}

} // namespace cli
