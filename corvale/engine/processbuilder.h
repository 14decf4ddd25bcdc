#pragma once

#include "corvale/engine/corvale.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace ZR::Corvale {

class AggregatedSink;
class CorvalePrivate;
class Data;
class NodeFilter;
class NodeSink;
class NodeSource;
class Port;
class Process;

/// A process under construction: the working tables of `createProcess`, and one operation a step.
///
///     declarations -> local sources     filter -> node     inputs -> links to sources
///     outputs -> sinks, aggregations    events             publish
///
/// Threads: lives in one call. Failure: a step logs its fault and gives false; what it attached to other
/// processes' sinks stays, everything else goes with the builder.
class ProcessBuilder
{
public:
    ProcessBuilder(CorvalePrivate& engine, const std::string& name, const std::string& filter);
    ~ProcessBuilder();

    /// All steps. Takes the engine's locks.
    bool build(const Corvale::PairList& inputs, const Corvale::PairList& outputs,
               const Corvale::PairList& events, const Corvale::PairList& declarations, unsigned int priority,
               float frequency);

    /// What has been made so far; null before there is anything.
    const boost::shared_ptr<Process>& process() const { return _process; }

private:
    bool _declare(const std::string& keyword, const std::string& declaration);
    bool _makeNode();

    // Caller holds the engine's _processesMutex, in all that follows.
    bool _connectInput(const std::string& port, const std::string& expression);
    boost::shared_ptr<NodeSource> _plainSource(const std::string& expression);
    boost::shared_ptr<NodeSource> _colonSource(const std::string& expression);
    boost::shared_ptr<NodeSource> _anonymousSource(boost::shared_ptr<Data> value);
    bool _connectOutput(const std::string& port, const std::string& sinkName);
    boost::shared_ptr<NodeSink> _addSink(const std::string& sinkName, const boost::shared_ptr<Port>& output);
    bool _aggregate(const std::string& sinkName, const boost::shared_ptr<Port>& output);
    bool _addEvent(const std::string& first, const std::string& second);
    bool _triggerOther(const std::string& sinkName, const std::string& processName);
    bool _triggeredByOther(const std::string& sink, const std::string& self);
    void _publish(float frequency);

    std::string _nextAnonymous();
    bool _fail(const std::string& text) const;      // with the prefix that names inputs and outputs
    bool _failShort(const std::string& text) const; // with the prefix that leaves them out
    bool _warn(const std::string& text) const;
    bool _report(int level, const std::string& text) const;

    CorvalePrivate& _engine;
    const std::string _name;
    const std::string _filterName;

    boost::shared_ptr<NodeFilter> _node;
    boost::shared_ptr<Process> _process;
    std::map<std::string, boost::shared_ptr<NodeSource>> _localSources;
    std::map<std::string, boost::shared_ptr<NodeSource>> _processSources; // the first of a name stays
    std::vector<boost::shared_ptr<NodeSource>> _attachedSources;          // all that an input is joined to
    std::map<std::string, boost::shared_ptr<NodeSink>> _sinks;
    std::map<std::string, boost::shared_ptr<AggregatedSink>> _aggregatedSinks;
    int _anonymousCount = 0;
};

} // namespace ZR::Corvale
