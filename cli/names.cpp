#include "cli/names.h"

#include "cli/failure.h"
#include "cli/text.h"

#include "corvale/engine/corvale.h"
#include "corvale/parser/parsingtools.h"

#include <algorithm>
#include <vector>

namespace cli {

using ZR::Corvale::Corvale;
using ZR::Corvale::splitString;

namespace {

using Names = std::vector<std::string>;

bool has(const Names& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Without what the engine makes for itself: constants, the parts of aggregations, sinks of other processes.
Names ofTheProgram(Names names)
{
    const auto hidden = [](const std::string& name) {
        return name.find(':') != std::string::npos || name.rfind("___Anonymous", 0) == 0;
    };
    names.erase(std::remove_if(names.begin(), names.end(), hidden), names.end());
    return names;
}

void requireProcess(const Corvale& engine, const std::string& process, const std::string& name)
{
    if (!engine.isProcess(process))
        throw Failure("there is no process \"" + process + "\" for \"" + name +
                      "\"; the program's processes: " + listed(engine.getProcesses()));
}

} // namespace

void requireSource(const Corvale& engine, const std::string& name)
{
    if (name.find(':') == std::string::npos) {
        if (!has(engine.getSources(), name))
            throw Failure("there is no source \"" + name +
                          "\"; the program's sources: " + listed(engine.getSources()));
        return;
    }
    const auto [process, source] = splitString(":", name);
    requireProcess(engine, process, name);
    const Names sources = ofTheProgram(engine.getProcessSources(process));
    if (!has(sources, source))
        throw Failure("the process \"" + process + "\" has no source \"" + source +
                      "\"; its sources: " + listed(sources));
}

void requireSink(const Corvale& engine, const std::string& name)
{
    const auto [process, sink] = splitString(":", name);
    if (sink.empty())
        throw Failure("\"" + name + "\" names no sink; give PROCESS:SINK, of the processes: " +
                      listed(engine.getProcesses()));
    requireProcess(engine, process, name);
    Names sinks = ofTheProgram(engine.getProcessSinks(process));
    const Names aggregated = engine.getProcessAggregatedSinks(process);
    sinks.insert(sinks.end(), aggregated.begin(), aggregated.end());
    if (!has(sinks, sink))
        throw Failure("the process \"" + process + "\" has no sink \"" + sink +
                      "\"; its sinks: " + listed(sinks));
}

} // namespace cli
