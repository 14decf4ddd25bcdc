// Building composite filters and classifiers.

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/filter/filtercomposite.h"
#include "corvale/filters/knnclassification.h"
#include "corvale/parser/literal.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"
#include "rk/path.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.private");

// Each node takes some 400 bytes of the stack of whoever computes, which is 8 megabytes by default.
constexpr std::size_t greatestDepth = 5000;

/// A composite filter under construction. Each step gives false at its first fault, after a line.
class CompositeBuilder
{
public:
    explicit CompositeBuilder(const std::string& name)
        : _name(name),
          _composite(boost::make_shared<FilterComposite>(name))
    {
    }

    const boost::shared_ptr<FilterComposite>& composite() const { return _composite; }

    bool addNodes(const Corvale::PairList& filters,
                  const std::map<std::string, boost::shared_ptr<Filter>>& table)
    {
        for (const auto& [filterName, nodeName] : filters) {
            const boost::shared_ptr<Filter> filter = findIn(table, filterName);
            if (!filter)
                return fail("The filter \"" + nodeName + "\" is declared as \"" + filterName + "\" but \"" +
                            filterName + "\" has never been declared.");
            _composite->addNode(boost::make_shared<NodeFilter>(nodeName, filter));
        }
        return true;
    }

    bool addLinks(const Corvale::LinkList& links)
    {
        for (const auto& [from, to] : links) {
            const boost::shared_ptr<NodeFilter> source = _composite->getNode(from.first);
            if (!source)
                return fail("The filter \"" + from.first + "\" is not declared.");
            const boost::shared_ptr<NodeFilter> target = _composite->getNode(to.first);
            if (!target)
                return fail("The filter \"" + to.first + "\" is not declared.");
            const boost::shared_ptr<Port> output = source->getOutput(from.second);
            if (!output)
                return fail("The port \"" + from.second + "\" is not declared in \"" + from.first + "\".");
            const boost::shared_ptr<Port> input = target->getInput(to.second);
            if (!input)
                return fail("The port \"" + to.second + "\" is not declared in \"" + to.first + "\"");
            if (!input->isCompatible(output))
                return fail("The port \"" + to.first + ":" + to.second + "\" has no common type with \"" +
                            from.first + ":" + from.second + "\".");
            input->attach(output);
        }
        return true;
    }

    bool isShallow()
    {
        return _composite->measureDepth() <= greatestDepth ||
               fail("The filter is more than " + std::to_string(greatestDepth) + " nodes deep.");
    }

    bool exportInputs(const Corvale::ExportList& inputs)
    {
        for (const auto& [inner, name] : inputs)
            if (!exportInput(inner.first, inner.second, name))
                return false;
        return true;
    }

    bool exportOutputs(const Corvale::ExportList& outputs)
    {
        for (const auto& [inner, name] : outputs)
            if (!_composite->exportOutput(inner.first, inner.second, name))
                return fail("Invalid exported output: \"" + inner.first + ":" + inner.first + "=>" + name +
                            "\".");
        return true;
    }

    bool fail(const std::string& text) const
    {
        rk::log::log(rk::log::Error, category, "createFilter(\"" + _name + "\", filters, links): " + text,
                     __FILE__, "createFilter", __LINE__);
        return false;
    }

private:
    // `port` is a port's name, or "name[default]".
    bool exportInput(const std::string& node, const std::string& port, const std::string& name)
    {
        const bool hasDefault = port.find('[') != std::string::npos;
        const std::list<std::string> pieces =
            hasDefault ? blockString('[', ']', port) : std::list<std::string>{port};
        if (hasDefault && pieces.size() != 2)
            return fail("Invalid default value declaration \"" + node + ":" + port + "\".");
        if (!_composite->exportInput(node, pieces.front(), name))
            return fail("Invalid exported input: \"" + node + ":" + port + "<=" + name + "\".");
        if (!hasDefault)
            return true;

        const boost::shared_ptr<NodeFilter> owner = _composite->getNode(node);
        const boost::shared_ptr<Port> inner =
            owner ? owner->getInput(pieces.front()) : boost::shared_ptr<Port>();
        if (!inner)
            return fail("Corvale internal corruption !");
        const boost::shared_ptr<Data> value = literalData(pieces.back());
        if (!value)
            return fail("Invalid default value: \"" + pieces.back() + "\".");
        inner->setDefaultData(value);
        return true;
    }

    const std::string _name;
    const boost::shared_ptr<FilterComposite> _composite;
};

} // namespace

// Only the inner filters keep memory, and those have their manager already.
bool CorvalePrivate::createFilter(const std::string& name, const PairList& filters, const LinkList& links,
                                  const ExportList& exportedInputs, const ExportList& exportedOutputs)
{
    CompositeBuilder builder(name);
    const boost::lock_guard guard(_filtersMutex);
    if (_filters.count(name) != 0)
        return builder.fail("A filter with the name \"" + name + "\" already exists.");
    if (!builder.addNodes(filters, _filters) || !builder.addLinks(links) || !builder.isShallow() ||
        !builder.exportInputs(exportedInputs) || !builder.exportOutputs(exportedOutputs))
        return false;
    _everyComposite.add(builder.composite());
    _filters.emplace(name, builder.composite());
    return true;
}

bool CorvalePrivate::createClassificationFilter(const std::string& name, ClassificationType type,
                                                const std::string& file)
{
    const auto fail = [&](const std::string& shown, const std::string& text) {
        rk::log::log(rk::log::Error, category,
                     "createClassificationFilter(\"" + name + "\", type, \"" + shown + "\"): " + text,
                     __FILE__, "createClassificationFilter", __LINE__);
        return false;
    };
    const std::string found = rk::path::findData("halvex/vision/fgs", file);
    if (found.empty())
        return fail(file, "File not found.");
    const boost::lock_guard guard(_filtersMutex);
    if (_filters.count(name) != 0)
        return fail(found, "A filter with the name \"" + name + "\" already exists.");
    if (type != KNN)
        return fail(file, "Invalid classification type.");
    const auto filter = boost::make_shared<Filters::KNNClassification>(found);
    filter->bindMemoryManager(&_memoryManager);
    _filters.emplace(name, filter);
    return true;
}

} // namespace ZR::Corvale
