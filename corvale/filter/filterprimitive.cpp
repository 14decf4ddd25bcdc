#include "corvale/filter/filterprimitive.h"

#include "corvale/data/data.h"
#include "corvale/filter/dotcluster.h"
#include "corvale/runtime/port.h"

#include <boost/make_shared.hpp>

namespace ZR::Corvale {

namespace {

boost::shared_ptr<Port> appendPort(std::vector<boost::shared_ptr<Port>>& ports, const std::string& name)
{
    ports.push_back(boost::make_shared<Port>(name));
    return ports.back();
}

} // namespace

boost::shared_ptr<Port> FilterPrimitive::_addInput(const std::string& name)
{
    return appendPort(_inputs, name);
}

boost::shared_ptr<Port> FilterPrimitive::_addOutput(const std::string& name)
{
    return appendPort(_outputs, name);
}

void FilterPrimitive::abortFilter(const StringHash&, const StringHash&, long long) {}

std::string FilterPrimitive::dumpToDot(long& counter, int) const
{
    DotCluster cluster(_name, counter);
    cluster.open("label = \"" + _name + " (Primitive Filter)\";", {"style=filled;", "fillcolor=white;"});
    cluster.box(_name);
    cluster.line("node[shape=circle, style=filled, fillcolor=black];");
    for (const boost::shared_ptr<Port>& port : _inputs) {
        cluster.line(cluster.id(port->getName()) + " [label=\"\"];");
        cluster.arrow(cluster.id(port->getName()), cluster.id());
    }
    for (const boost::shared_ptr<Port>& port : _outputs) {
        cluster.line(cluster.id(port->getName()) + " [label=\"\"];");
        cluster.arrow(cluster.id(), cluster.id(port->getName()));
    }
    return cluster.close();
}

} // namespace ZR::Corvale
