#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace ZR::Corvale {
class Data;
class Filter;
class FilterComposite;
class NodeFilter;
class NodeSource;
class Process;
} // namespace ZR::Corvale

/// Graphs of `Identity` nodes, which do nothing: what is left is the engine's own cost.
namespace graphs {

using ZR::Corvale::Data;
using ZR::Corvale::Filter;
using ZR::Corvale::NodeFilter;
using ZR::Corvale::NodeSource;
using ZR::Corvale::Process;

/// in -> Identity -> ... -> Identity -> out
boost::shared_ptr<Filter> chain(int nodes);

///              ,-> Identity -,
/// in -> Duplicate            Mandatory2 -> out
///              `-> Identity -'
boost::shared_ptr<Filter> diamond();

/// A chain of 10 inside a composite inside a composite ...: `depth` composites in all.
boost::shared_ptr<Filter> nested(int depth);

/// A process of one filter: source -> filter -> sink of its first output. It is due at every update
/// after its source was set.
struct OneProcess
{
    OneProcess(const std::string& name, const boost::shared_ptr<Filter>& filter,
               const boost::shared_ptr<NodeSource>& source);
    /// Without a node the sink reads the source.
    OneProcess(const std::string& name, const boost::shared_ptr<NodeFilter>& node,
               const boost::shared_ptr<NodeSource>& source);

    /// One computation with a new value.
    void compute(const boost::shared_ptr<Data>& value);

    boost::shared_ptr<NodeSource> source;
    boost::shared_ptr<Process> process;
};

OneProcess makeProcess(const std::string& name, const boost::shared_ptr<Filter>& filter);

/// The same without a filter: source -> sink.
OneProcess makeBareProcess(const std::string& name);

/// A program text: a filter "Chain" of so many `Identity` nodes.
std::string chainText(int nodes);

} // namespace graphs
