#include "corvale/engine/processbuilder.h"

#include "corvale/data/data.h"
#include "corvale/data/datalambda.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/filter/filter.h"
#include "corvale/parser/literal.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/aggregatedsink.h"
#include "corvale/runtime/event.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/nodeprocesssource.h"
#include "corvale/runtime/nodepulse.h"
#include "corvale/runtime/nodesink.h"
#include "corvale/runtime/nodesourcealias.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include <locale>
#include <sstream>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.private");
}

ProcessBuilder::ProcessBuilder(CorvalePrivate& engine, const std::string& name, const std::string& filter)
    : _engine(engine),
      _name(name),
      _filterName(filter)
{
}

ProcessBuilder::~ProcessBuilder() = default;

bool ProcessBuilder::build(const Corvale::PairList& inputs, const Corvale::PairList& outputs,
                           const Corvale::PairList& events, const Corvale::PairList& declarations,
                           unsigned int priority, float frequency)
{
    for (const auto& [keyword, declaration] : declarations)
        if (!_declare(keyword, declaration))
            return false;
    if (!_makeNode())
        return false;

    const boost::lock_guard guard(_engine._processesMutex);
    for (const auto& [port, expression] : inputs)
        if (!_connectInput(port, expression))
            return false;
    for (const auto& [port, sinkName] : outputs)
        if (!_connectOutput(port, sinkName))
            return false;
    _process = boost::make_shared<Process>(_name, _node, priority, Process::defaultFrequency);
    _engine._everyProcess.add(_process);
    for (const auto& [first, second] : events)
        if (!_addEvent(first, second))
            return false;
    _publish(frequency);
    return true;
}

bool ProcessBuilder::_declare(const std::string& keyword, const std::string& declaration)
{
    if (keyword == "source") {
        _localSources[declaration] = boost::make_shared<NodeSource>(declaration);
        return true;
    }
    if (keyword != "pulse")
        return _report(rk::log::Error, "Can't create process: invalid keyword \"" + keyword + "\".");
    if (declaration.find('[') == std::string::npos) {
        _localSources[declaration] = boost::make_shared<NodePulse>(declaration);
        return true;
    }
    const std::list<std::string> pieces = blockString('[', ']', declaration);
    if (pieces.size() != 2)
        return _failShort("Invalid default value declaration: \"" + keyword + " " + declaration + "\".");
    const boost::shared_ptr<Data> value = literalData(pieces.back());
    if (!value)
        return _failShort("Invalid default value: " + pieces.back());
    const boost::shared_ptr<NodePulse> pulse = boost::make_shared<NodePulse>(pieces.front());
    pulse->setDefaultData(value);
    _localSources[pieces.front()] = pulse;
    return true;
}

bool ProcessBuilder::_makeNode()
{
    const boost::shared_ptr<Filter> filter = _engine._findFilter(_filterName);
    if (!filter)
        return _fail("the filter \"" + _filterName + "\" is not present in the filter library.");
    _node = boost::make_shared<NodeFilter>(_name + "_" + _filterName, filter);
    return true;
}

bool ProcessBuilder::_connectInput(const std::string& port, const std::string& expression)
{
    const boost::lock_guard sources(_engine._sourcesMutex);
    const boost::lock_guard aliases(_engine._aliasesMutex);
    const boost::shared_ptr<Port> input = _node->getInput(port);
    if (!input)
        return _fail("impossible to find the specified input \"" + port + "\".");
    const boost::shared_ptr<NodeSource> source =
        hasColon(expression) ? _colonSource(expression) : _plainSource(expression);
    if (!source)
        return false;
    input->attach(source->getOutput("out"));
    _attachedSources.push_back(source);
    return true;
}

// A name of a source wins over a literal, and a literal over the name of a filter.
boost::shared_ptr<NodeSource> ProcessBuilder::_plainSource(const std::string& expression)
{
    boost::shared_ptr<NodeSource> source = findIn(_engine._sources, expression);
    if (!source)
        source = findIn(_engine._sourceAliases, expression);
    if (source) {
        _processSources.emplace(source->getName(), source);
        return source;
    }
    if (const boost::shared_ptr<Data> value = literalData(expression))
        return _anonymousSource(value);
    if (expression == "null")
        return _anonymousSource(boost::shared_ptr<Data>());
    if (const boost::shared_ptr<Filter> filter = _engine._findFilter(expression))
        return _anonymousSource(boost::make_shared<Data>(Type::Lambda::createLambda(filter)));
    _failShort("impossible to find the specified source \"" + expression + "\".");
    return boost::shared_ptr<NodeSource>();
}

// "this:local" or "process:sink". Each use of a sink makes a source of its own, of which the process
// shows the first.
boost::shared_ptr<NodeSource> ProcessBuilder::_colonSource(const std::string& expression)
{
    const auto [left, right] = splitString(":", expression);
    if (left == "this") {
        const boost::shared_ptr<NodeSource> local = findIn(_localSources, right);
        if (!local)
            _fail("impossible to find the local source \"" + right + "\" in the current process.");
        return local;
    }
    const boost::shared_ptr<Process> upstream = _engine._findProcess(left);
    if (!upstream) {
        _failShort("impossible to find the specified process \"" + left + "\".");
        return boost::shared_ptr<NodeSource>();
    }
    if (upstream->getSinks().count(right) == 0 && upstream->getAggregatedSinks().count(right) == 0) {
        _fail("impossible to find the specified sink \"" + right + "\" in the process \"" + left + "\".");
        return boost::shared_ptr<NodeSource>();
    }
    const boost::shared_ptr<NodeSource> source =
        boost::make_shared<NodeProcessSource>(left + ":" + right, upstream, right);
    _processSources.emplace(source->getName(), source);
    return source;
}

boost::shared_ptr<NodeSource> ProcessBuilder::_anonymousSource(boost::shared_ptr<Data> value)
{
    const boost::shared_ptr<NodeSource> source = boost::make_shared<NodeSource>(_nextAnonymous());
    source->setData(value);
    _processSources.emplace(source->getName(), source);
    return source;
}

bool ProcessBuilder::_connectOutput(const std::string& port, const std::string& sinkName)
{
    const boost::shared_ptr<Port> output = _node->getOutput(port);
    if (!output)
        return _warn("impossible to find the specified output \"" + port +
                     "\".\n  Please verify the output list.");
    if (_aggregatedSinks.count(sinkName) != 0 || _sinks.count(sinkName) != 0)
        return _aggregate(sinkName, output);
    _addSink(sinkName, output);
    return true;
}

boost::shared_ptr<NodeSink> ProcessBuilder::_addSink(const std::string& sinkName,
                                                     const boost::shared_ptr<Port>& output)
{
    const boost::shared_ptr<NodeSink> sink = boost::make_shared<NodeSink>(sinkName);
    sink->getInput("in")->attach(output);
    _sinks.emplace(sinkName, sink);
    return sink;
}

// The second use of a sink's name turns the sink into the first of an aggregation; from then on each
// use adds a hidden sink.
bool ProcessBuilder::_aggregate(const std::string& sinkName, const boost::shared_ptr<Port>& output)
{
    boost::shared_ptr<AggregatedSink>& aggregation = _aggregatedSinks[sinkName];
    bool added = true;
    if (!aggregation) {
        aggregation = boost::make_shared<AggregatedSink>(sinkName);
        const boost::shared_ptr<NodeSink> first = findIn(_sinks, sinkName);
        _sinks.erase(sinkName);
        first->setName(_nextAnonymous());
        _sinks.emplace(first->getName(), first);
        added = aggregation->addSink(first);
    }
    added = aggregation->addSink(_addSink(_nextAnonymous(), output)) && added;
    return added || _warn("impossible to create an aggregation with twice the same source.");
}

bool ProcessBuilder::_addEvent(const std::string& first, const std::string& second)
{
    return hasColon(first) ? _triggeredByOther(first, second) : _triggerOther(first, second);
}

bool ProcessBuilder::_triggerOther(const std::string& sinkName, const std::string& processName)
{
    const boost::shared_ptr<NodeSink> sink = findIn(_sinks, sinkName);
    if (!sink)
        return _warn("impossible to find the specified sink \"" + sinkName + "\".");
    const boost::shared_ptr<Process> process = _engine._findProcess(processName);
    if (!process)
        return _warn("impossible to find the specified process \"" + processName + "\".");
    sink->addEvent(boost::make_shared<Event>(process, &_engine._scheduler));
    return true;
}

bool ProcessBuilder::_triggeredByOther(const std::string& sink, const std::string& self)
{
    if (self != "self")
        return _fail("\"self\" expected instead of \"" + self + "\".");
    const auto [processName, sinkName] = splitString(":", sink);
    const boost::shared_ptr<Process> other = _engine._findProcess(processName);
    if (!other)
        return _fail("The process \"" + processName + "\" is not declared.");
    const boost::shared_ptr<NodeSink> node = findIn(other->getSinks(), sinkName);
    if (!node)
        return _fail("The sink \"" + sinkName + "\" is not declared in \"" + processName + "\".");
    node->addEvent(boost::make_shared<Event>(_process, &_engine._scheduler));
    return true;
}

// With a name that is taken the former process stays in the table, and this one is dropped.
void ProcessBuilder::_publish(float frequency)
{
    const auto addSources = [&](const std::map<std::string, boost::shared_ptr<NodeSource>>& sources) {
        for (const auto& entry : sources) {
            _process->addSource(entry.second);
            _process->watchSource(entry.second);
        }
    };
    addSources(_processSources);
    for (const auto& entry : _sinks)
        _process->addSink(entry.second);
    for (const auto& entry : _aggregatedSinks)
        _process->addAggregatedSink(entry.second);
    addSources(_localSources);
    for (const boost::shared_ptr<NodeSource>& source : _attachedSources)
        _process->holdSource(source);
    _process->setFrequency(frequency);
    std::ostringstream line;
    line.imbue(std::locale::classic()); // the same text whatever locale the host sets
    line << "new corvale process: \"" << _name << "\" priority: " << _process->getPriority()
         << " frequency: " << _process->getFrequency();
    const std::string text = line.str();
    _engine._processes.emplace(_name, _process);
    _report(rk::log::Verbose, text);
}

std::string ProcessBuilder::_nextAnonymous()
{
    return "___Anonymous" + std::to_string(_anonymousCount++);
}

bool ProcessBuilder::_fail(const std::string& text) const
{
    return _report(rk::log::Error,
                   "createProcess(\"" + _name + "\", \"" + _filterName + "\", inputs, outputs): " + text);
}

bool ProcessBuilder::_failShort(const std::string& text) const
{
    return _report(rk::log::Error, "createProcess(\"" + _name + "\", \"" + _filterName + "\", ...): " + text);
}

bool ProcessBuilder::_warn(const std::string& text) const
{
    return _report(rk::log::Warning,
                   "createProcess(\"" + _name + "\", \"" + _filterName + "\", inputs, outputs): " + text);
}

bool ProcessBuilder::_report(int level, const std::string& text) const
{
    rk::log::log(level, category, text, __FILE__, "createProcess", __LINE__);
    return false;
}

} // namespace ZR::Corvale
