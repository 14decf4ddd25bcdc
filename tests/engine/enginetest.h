#pragma once

#include "corvale/data/data.h"
#include "corvale/engine/corvale.h"
#include "corvale/filter/userfilter.h"
#include "support/logcapture.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <thread>

namespace support {

using namespace ZR::Corvale;
using Value = boost::shared_ptr<Data>;

template <typename Content>
Value value(const Content& content)
{
    return boost::make_shared<Data>(content);
}

inline std::string text(const Value& data)
{
    return data ? data->toString() : "null";
}

inline std::string joined(const std::vector<std::string>& names)
{
    return boost::algorithm::join(names, " ");
}

/// A filter from one value, "in", to another, "out".
struct FunctionFilter : UserFilter
{
    using Function = std::function<Value(Value)>;

    FunctionFilter(const std::string& name, Function function, const std::string& input = "in")
        : name(name),
          input(input),
          function(function)
    {
    }
    std::string getName() override { return name; }
    std::string getDescription() override { return "for tests"; }
    std::vector<std::string> getInputs() override { return {input}; }
    std::vector<std::string> getOutputs() override { return {"out"}; }
    std::vector<Value> applyFilter(const std::vector<Value>& inputs) override
    {
        return {function(inputs[0])};
    }

    const std::string name;
    const std::string input;
    const Function function;
};

/// Counts its computations in each place where it stands.
struct Count : FunctionFilter
{
    Count() : FunctionFilter("Count", [this](Value) { return count(); }) {}
    bool hasLocalData() override { return true; }
    Value count()
    {
        const Value before = getLocalData();
        setLocalData(value((before ? int(*before) : 0) + 1));
        return getLocalData();
    }
};

/// Waits for what other threads bring about; false if it does not come for a very long time.
inline bool comesTrue(const std::function<bool()>& condition)
{
    for (int i = 0; i < 60000 && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

constexpr float always = 1e9f; // a frequency whose period is below a microsecond: due at every look

inline bool make(Corvale& engine, const std::string& name, const std::string& filter,
                 const Corvale::PairList& inputs, const Corvale::PairList& outputs,
                 const Corvale::PairList& events = {}, const Corvale::PairList& declarations = {},
                 unsigned int priority = 3, float frequency = always)
{
    return engine.createProcess(name, filter, inputs, outputs, events, declarations, priority, frequency);
}

/// A process around a filter with one input, "in": "name:out".
inline bool pass(Corvale& engine, const std::string& name, const std::string& source,
                 const std::string& filter = "Identity")
{
    return make(engine, name, filter, {{"in", source}}, {{"out", "out"}});
}

/// An engine without workers, with the source "s" set to 1, and what it logs.
struct EngineTest : testing::Test
{
    EngineTest()
    {
        engine.createSource("s");
        engine.setData("s", value(1));
    }
    std::string get(const std::string& sink) { return text(engine.getData(sink)); }
    std::string jobs() const { return joined(engine.getScheduledJobs()); }
    std::size_t faults() const { return log.count(rk::log::Error) + log.count(rk::log::Fatal); }

    support::LogCapture log;
    Corvale engine{0};
};

} // namespace support
