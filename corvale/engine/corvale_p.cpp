#include "corvale/engine/corvale_p.h"

#include "corvale/data/data.h"
#include "corvale/data/datalambda.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/filter/filter.h"
#include "corvale/filter/filteradapter.h"
#include "corvale/filter/filtercomposite.h"
#include "corvale/filter/userfilter.h"
#include "corvale/filters/builtinfilters.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/nodesourcealias.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

namespace {

const std::string category = rk::log::addCategory("corvale.private");

std::vector<std::string> portTexts(const std::vector<boost::shared_ptr<Port>>& ports)
{
    std::vector<std::string> texts;
    for (const boost::shared_ptr<Port>& port : ports) {
        std::string types;
        for (const DataType type : port->getTypes())
            types += (types.empty() ? "[" : ", ") + Data::getTypeName(type);
        texts.push_back((port->isOptional() ? "optional " : "") + (types.empty() ? "" : types + "] ") +
                        port->getName());
    }
    return texts;
}

} // namespace

CorvalePrivate::CorvalePrivate(unsigned int threads) : _parser(this), _scheduler(this, threads)
{
    for (const boost::shared_ptr<Filter>& filter : Filters::makeBuiltinFilters()) {
        _filters[filter->getName()] = filter;
        filter->bindMemoryManager(&_memoryManager);
    }
    try {
        _scheduler.start();
    } catch (...) { // the workers that were made must not see the tables go
        _scheduler.stop();
        throw;
    }
}

CorvalePrivate::~CorvalePrivate()
{
    _scheduler.stop();
    _everyProcess.forEach([](Process& process) { process.clearEvents(); });
    _everyComposite.forEach([](FilterComposite& composite) { composite.clearValues(); });
}

bool CorvalePrivate::startScheduler()
{
    return _scheduler.start();
}

bool CorvalePrivate::stopScheduler()
{
    return _scheduler.stop();
}

std::vector<std::string> CorvalePrivate::getScheduledJobs() const
{
    std::vector<std::string> names;
    for (const boost::shared_ptr<Process>& process : _scheduler.getScheduledProcessList())
        names.push_back(*process->getNameHash()._string);
    return names;
}

std::string CorvalePrivate::getInstrumentationResult() const
{
    return std::string();
}

boost::shared_ptr<Filter> CorvalePrivate::_findFilter(const std::string& name) const
{
    const boost::lock_guard guard(_filtersMutex);
    return findIn(_filters, name);
}

std::vector<std::string> CorvalePrivate::getFilters() const
{
    const boost::lock_guard guard(_filtersMutex);
    return keysOf(_filters);
}

bool CorvalePrivate::isFilter(const std::string& name) const
{
    return _findFilter(name) != nullptr;
}

std::string CorvalePrivate::getFilterDescription(const std::string& name) const
{
    const boost::shared_ptr<Filter> filter = _findFilter(name);
    if (!filter)
        RK_LOG(rk::log::Error, category) << "getFilterDescription(\"" << name << "\"): filter not found.";
    return filter ? filter->getDescription() : std::string();
}

std::vector<std::string> CorvalePrivate::getFilterInputs(const std::string& name) const
{
    const boost::shared_ptr<Filter> filter = _findFilter(name);
    if (!filter)
        RK_LOG(rk::log::Error, category) << "getFilterInputs(\"" << name << "\"): filter not found.";
    return filter ? portTexts(filter->getInputs()) : std::vector<std::string>();
}

std::vector<std::string> CorvalePrivate::getFilterOutputs(const std::string& name) const
{
    const boost::shared_ptr<Filter> filter = _findFilter(name);
    if (!filter)
        RK_LOG(rk::log::Error, category) << "getFilterOutputs(\"" << name << "\"): filter not found.";
    return filter ? portTexts(filter->getOutputs()) : std::vector<std::string>();
}

bool CorvalePrivate::createFilter(boost::shared_ptr<UserFilter> userFilter)
{
    if (!userFilter) {
        RK_LOG(rk::log::Error, category) << "createFilter(userFilter): there is no filter.";
        return false;
    }
    boost::shared_ptr<Filter> filter = boost::make_shared<FilterAdapter>(userFilter);
    filter->bindMemoryManager(&_memoryManager);
    const boost::lock_guard guard(_filtersMutex);
    _filters[filter->getName()].swap(filter); // a former one ends after the lock
    return true;
}

boost::shared_ptr<Type::Lambda> CorvalePrivate::createLambda(const std::string& name) const
{
    const boost::shared_ptr<Filter> filter = _findFilter(name);
    if (filter)
        return Type::Lambda::createLambda(filter);
    RK_LOG(rk::log::Error, category) << "createLambda(\"" << name << "\"): The filter \"" << name
                                     << "\" has not been found.";
    return boost::shared_ptr<Type::Lambda>();
}

bool CorvalePrivate::deleteFilter(const std::string& name)
{
    boost::shared_ptr<Filter> dropped; // ends after the lock
    const boost::lock_guard guard(_filtersMutex);
    const auto found = _filters.find(name);
    if (found == _filters.end())
        return false;
    dropped = found->second;
    _filters.erase(found);
    return true;
}

std::string CorvalePrivate::dumpFilter(const std::string& name, int depth) const
{
    const boost::shared_ptr<Filter> filter = _findFilter(name);
    if (!filter)
        return std::string();
    long counter = 0;
    const std::string cluster = filter->dumpToDot(counter, depth);
    return "digraph " + filter->getName() + "{\nrankdir=LR;\n\n" + cluster + "}\n";
}

} // namespace ZR::Corvale
