#include "engine/enginetest.h"

#include <fstream>
#include <map>
#include <sstream>

using namespace support;

namespace {

struct Session : EngineTest
{
    Session() { engine.createFilter(boost::make_shared<Count>()); }
    void TestBody() override {}
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
    OPERATION(getProcessDescription), OPERATION(setProcessDescription), OPERATION(getScheduledJobs), {"zombies", zombies}, {"load", load}, {"pass", pass},
    {"count", count}};
#undef OPERATION
// clang-format on

} // namespace

// Each operation of a script gives what stands behind its arrow, a "!" for error lines included; "==" begins
// with another engine.
TEST(Scripts, GiveTheirResults)
{
    for (const std::string script :
         {"sources.txt", "processes.txt", "failures.txt", "programs.txt", "schedules.txt"}) {
        std::ifstream file(SCRIPTS + script);
        std::unique_ptr<Session> session;
        int number = 0;
        for (std::string line; std::getline(file, line);) {
            SCOPED_TRACE(script + ":" + std::to_string(++number));
            if (line.rfind("==", 0) == 0)
                session.reset(); // its capture of the log ends first
            if (!session)
                session = std::make_unique<Session>();
            const std::size_t arrow = line.rfind(" => ");
            if (arrow == std::string::npos)
                continue;
            std::istringstream words(line.substr(0, arrow));
            std::string operation, name, rest;
            std::getline((words >> operation >> name).ignore(), rest);
            std::string result; // what the operation before "log" has logged, or that of another one
            for (const rk::log::Record& record : session->log.records())
                result += (result.empty() ? "" : " / ") + record.function + ": " + record.message;
            session->log.clear();
            if (operation != "log")
                result = operations.at(operation)(session->engine, name, rest);
            EXPECT_EQ(result + (session->faults() > 0 ? " !" : ""), line.substr(arrow + 4));
        }
        EXPECT_GT(number, 30) << script;
    }
}
