#pragma once

#include <boost/shared_ptr.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace ZR::Corvale {

class Port;

/// Collects one cluster of a DOT graph, line by line: a filter, a node or a composite with its ports.
///
/// `number` makes the identifiers of the cluster unique within a dump. Names are written as they are: a
/// name that is no identifier of the language gives a text that a viewer refuses.
class DotCluster
{
public:
    DotCluster(const std::string& name, long number);

    /// The cluster's own node, and the node of one of its ports.
    std::string id() const { return _name + _suffix; }
    std::string id(const std::string& port) const { return _name + "_" + port + _suffix; }

    DotCluster& line(const std::string& text);
    DotCluster& arrow(const std::string& from, const std::string& to);
    /// The opening lines, up to the first empty one. `styles` are whole lines.
    void open(const std::string& label, const std::vector<std::string>& styles);
    /// One closed box with the given label.
    void box(const std::string& label);
    /// Begins the ports, drawn as ellipses.
    void portShape();
    void port(const std::string& name) { line(id(name) + " [label=" + name + "];"); }
    /// All ports, with arrows through the cluster's own node.
    void portsOfBox(const std::vector<boost::shared_ptr<Port>>& inputs,
                    const std::vector<boost::shared_ptr<Port>>& outputs);
    /// The whole text, closed.
    std::string close();

    /// How deep what lies inside is opened; a negative depth stays negative and opens everything.
    static int inside(int depth) { return depth > 0 ? depth - 1 : depth; }

private:
    const std::string _name;
    const std::string _suffix;
    std::ostringstream _text;
};

} // namespace ZR::Corvale
