#include "corvale/data/datalambda.h"
#include "engine/enginetest.h"
#include "rk/path.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem.hpp>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <map>
#include <sstream>

using namespace support;

namespace {

namespace fs = boost::filesystem;

struct Session : EngineTest
{
    Session()
    {
        engine.createFilter(boost::make_shared<Count>());
        rk::path::addDataPath(folder.string());
    }
    ~Session() override { fs::remove_all(folder); }
    void TestBody() override {}

    // What has been logged, each line with its function, and with what sets it apart from an engine's error.
    std::string logged() const
    {
        std::string lines;
        for (const rk::log::Record& record : log.records())
            lines += (lines.empty() ? "" : " / ") + record.function +
                     (record.category.find("corvale.private") == 0 ? "" : ", " + record.category) +
                     (record.level == rk::log::Warning ? " (warning): " : ": ") + record.message;
        return boost::algorithm::replace_all_copy(lines, "\n", "\\n");
    }

    const fs::path folder = fs::temp_directory_path() / fs::unique_path();
};

template <typename Result>
std::string shown(const Result& result)
{
    if constexpr (std::is_same_v<Result, bool>)
        return result ? "yes" : "no";
    else if constexpr (std::is_same_v<Result, std::string>)
        return result;
    else if constexpr (std::is_same_v<Result, Value>)
        return text(result);
    else if constexpr (std::is_arithmetic_v<Result>)
        return Data(result).toString();
    else if constexpr (std::is_same_v<Result, boost::shared_ptr<Type::Lambda>>)
        return result ? "function" : "null";
    else
        return joined(result);
}

// What an operation gives; `rest` is what stands behind the name: another one, or a number.
template <auto operation>
std::string call(Corvale& engine, const std::string& name, const std::string& rest)
{
    using Call = decltype(operation);
    if constexpr (std::is_invocable_v<Call, Corvale&>)
        return shown((engine.*operation)());
    else if constexpr (std::is_invocable_v<Call, Corvale&, std::string>)
        return shown((engine.*operation)(name));
    else if constexpr (std::is_invocable_v<Call, Corvale&, std::string, std::string>)
        return shown((engine.*operation)(name, rest));
    else if constexpr (std::is_invocable_v<Call, Corvale&, std::string, float>)
        return shown((engine.*operation)(name, std::stof(rest)));
    else
        return shown((engine.*operation)(name, rest.empty() ? nullptr : value(std::stoi(rest))));
}

std::string zombies(Corvale& engine, const std::string&, const std::string&)
{
    std::string names;
    for (const std::string& name : engine.getProcesses())
        names += engine.isProcessZombie(name) ? name : "";
    return names;
}
std::string load(Corvale& engine, const std::string& name, const std::string& rest)
{
    return shown(engine.loadProgram(name + " " + rest));
}
std::string pass(Corvale& engine, const std::string& name, const std::string& rest)
{
    return shown(support::pass(engine, name, rest));
}
std::string count(Corvale& engine, const std::string& name, const std::string& rest)
{
    return shown(support::pass(engine, name, rest, "Count"));
}
std::string createEvent(Corvale& engine, const std::string& name, const std::string&)
{
    return shown(engine.createEvent(name, {}));
}
std::string classify(Corvale& engine, const std::string& name, const std::string& rest)
{
    const auto type = ClassificationType(rest[0] - '0');
    return shown(engine.createClassificationFilter(name, type, rest.substr(2)));
}
// The filters that a new engine lacks, or this one has lost.
std::string filters(Corvale& engine, const std::string&, const std::string&)
{
    const auto own = engine.getFilters(), all = Corvale(0).getFilters();
    std::vector<std::string> names;
    std::set_symmetric_difference(own.begin(), own.end(), all.begin(), all.end(), std::back_inserter(names));
    return joined(names);
}
std::string write(Corvale&, const std::string& path, const std::string& text)
{
    fs::create_directories(fs::path(path).parent_path());
    return shown(bool(std::ofstream(path) << text));
}

// clang-format off
#define OPERATION(name) {#name, call<&Corvale::name>}
const std::map<std::string, std::string (*)(Corvale&, const std::string&, const std::string&)> operations = {
    OPERATION(createSource), OPERATION(createSourceAlias), OPERATION(createSourceFromProcessSink),
    OPERATION(deleteSource), OPERATION(renameSourceAlias), OPERATION(retargetSourceAlias), OPERATION(setData),
    OPERATION(getData), OPERATION(getLastData), OPERATION(getSourceData), OPERATION(getSourceFrequency),
    OPERATION(isSourceBound), OPERATION(getSources), OPERATION(deleteProcess), OPERATION(disableProcess),
    OPERATION(enableProcess), OPERATION(isProcessEnable), OPERATION(isProcessZombie), OPERATION(renameProcess),
    OPERATION(resetProcess), OPERATION(setProcessPriority), OPERATION(getProcessPriority),
    OPERATION(setProcessFrequency), OPERATION(getProcessFrequency), OPERATION(getProcesses),
    OPERATION(getProcessSources), OPERATION(getProcessSinks), OPERATION(getProcessAggregatedSinks),
    OPERATION(getProcessDescription), OPERATION(setProcessDescription), OPERATION(getScheduledJobs),
    OPERATION(createLambda), OPERATION(deleteFilter), OPERATION(dumpFilter), OPERATION(getFilterDescription),
    OPERATION(getFilterInputs), OPERATION(getFilterOutputs), {"createEvent", createEvent}, {"classify", classify},
    OPERATION(loadProgramFromFile), {"filters", filters}, {"write", write}, {"zombies", zombies}, {"load", load},
    {"pass", pass}, {"count", count}};
#undef OPERATION
// clang-format on

} // namespace

// Each operation of a script gives what stands behind its arrow, a "!" for error lines included; "==" begins
// with another engine, and with another folder, whose path "%" stands for; "$" is where the plug-ins lie.
TEST(Scripts, GiveTheirResults)
{
    for (const std::string script :
         {"sources.txt", "processes.txt", "failures.txt", "files.txt", "programs.txt", "schedules.txt"}) {
        std::ifstream file(SCRIPTS + script);
        std::unique_ptr<Session> session;
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            SCOPED_TRACE(script + ":" + std::to_string(++number));
            if (line.rfind("==", 0) == 0)
                session.reset(); // its capture of the log ends first
            if (!session)
                session = std::make_unique<Session>();
            if (line.find(" => ") == std::string::npos)
                continue;
            boost::algorithm::replace_all(line, "%", session->folder.string());
            boost::algorithm::replace_all(line, "$", PLUGIN_FOLDER);
            const std::size_t arrow = line.rfind(" => ");
            std::istringstream words(line.substr(0, arrow));
            std::string operation, name, rest;
            std::getline((words >> operation >> std::quoted(name)).ignore(), rest);
            std::string result = session->logged();
            session->log.clear();
            try {
                if (operation != "log")
                    result = operations.at(operation)(session->engine, name, rest);
            } catch (const std::out_of_range&) {
                result = "out of range";
            }
            EXPECT_EQ(result + (session->faults() > 0 ? " !" : ""), line.substr(arrow + 4));
        }
        EXPECT_GT(number, 30) << script;
    }
}
