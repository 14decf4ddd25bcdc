#include "corvale/filter/dotcluster.h"

#include "corvale/runtime/port.h"

namespace ZR::Corvale {

DotCluster::DotCluster(const std::string& name, long number)
    : _name(name),
      _suffix("_" + std::to_string(number))
{
}

DotCluster& DotCluster::line(const std::string& text)
{
    _text << text << "\n";
    return *this;
}

DotCluster& DotCluster::arrow(const std::string& from, const std::string& to)
{
    return line(from + " -> " + to + ";");
}

void DotCluster::open(const std::string& label, const std::vector<std::string>& styles)
{
    line("subgraph cluster_" + id()).line("{").line(label);
    for (const std::string& style : styles)
        line(style);
    line("");
}

void DotCluster::box(const std::string& label)
{
    line("node[shape=component, style=filled, fillcolor=white];").line(id() + "[label=" + label + "];");
}

void DotCluster::portShape()
{
    line("node[shape=ellipse, style=filled, fillcolor=white];");
}

void DotCluster::portsOfBox(const std::vector<boost::shared_ptr<Port>>& inputs,
                            const std::vector<boost::shared_ptr<Port>>& outputs)
{
    for (const boost::shared_ptr<Port>& input : inputs) {
        port(input->getName());
        arrow(id(input->getName()), id());
    }
    for (const boost::shared_ptr<Port>& output : outputs) {
        port(output->getName());
        arrow(id(), id(output->getName()));
    }
}

std::string DotCluster::close()
{
    line("}").line("");
    return _text.str();
}

} // namespace ZR::Corvale
