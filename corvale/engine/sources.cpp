// The engine's sources and source aliases.

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/engine/tablekeys.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/nodeprocesssource.h"
#include "corvale/runtime/nodesourcealias.h"
#include "corvale/runtime/process.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.private");
}

std::vector<std::string> CorvalePrivate::getSources() const
{
    const boost::lock_guard guard(_sourcesMutex);
    return keysOf(_sources);
}

bool CorvalePrivate::_isSourceNameTaken(const std::string& name) const
{
    return _sources.count(name) != 0 || _sourceAliases.count(name) != 0;
}

bool CorvalePrivate::createSource(const std::string& name)
{
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    if (_isSourceNameTaken(name)) {
        RK_LOG(rk::log::Error, category) << "createSource(\"" << name << "\"): source already exists.";
        return false;
    }
    _sources.emplace(name, boost::make_shared<NodeSource>(name));
    return true;
}

bool CorvalePrivate::createSourceFromProcessSink(const std::string& name, const std::string& sink)
{
    const boost::lock_guard processes(_processesMutex);
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    if (_isSourceNameTaken(name)) {
        RK_LOG(rk::log::Error, category)
            << "createSourceFromProcessSink(\"" << name << "\"): source already exists.";
        return false;
    }
    const std::string prefix = "createSourceFromProcessSink(\"" + name + "\", \"" + sink + "\"): ";
    if (!hasColon(sink)) {
        RK_LOG(rk::log::Error, category)
            << prefix << "impossible to find the specified process sink. Please make sure to write the sink "
            << "name as \"process_name:sink_name\".";
        return false;
    }
    const auto [processName, sinkName] = splitString(":", sink);
    const boost::shared_ptr<Process> process = _findProcess(processName);
    if (!process) {
        RK_LOG(rk::log::Error, category)
            << prefix << "impossible to find the specified process \"" << processName << "\".";
        return false;
    }
    if (process->getSinks().count(sinkName) == 0 && process->getAggregatedSinks().count(sinkName) == 0) {
        RK_LOG(rk::log::Error, category) << prefix << "impossible to find the specified sink \"" << sinkName
                                         << "\" in the process \"" << processName << "\".";
        return false;
    }
    _sources.emplace(name, boost::make_shared<NodeProcessSource>(name, process, sinkName));
    return true;
}

bool CorvalePrivate::createSourceAlias(const std::string& alias, const std::string& source)
{
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    const boost::shared_ptr<NodeSource> target = findIn(_sources, source);
    if (!target) {
        RK_LOG(rk::log::Error, category)
            << "Can't create alias \"" << alias << "\": source \"" << source << "\" not found.";
        return false;
    }
    if (_isSourceNameTaken(alias)) {
        RK_LOG(rk::log::Error, category)
            << "Can't create alias \"" << alias << "\": source or alias is already present.";
        return false;
    }
    const boost::shared_ptr<NodeSourceAlias> node = boost::make_shared<NodeSourceAlias>(alias, target);
    const auto entry = _sourceAliases.emplace(alias, node).first;
    try {
        _aliasesOfSource[source].insert(alias);
    } catch (...) {
        _sourceAliases.erase(entry);
        throw;
    }
    return true;
}

// The node keeps the name that it was made with; only the table's key changes.
bool CorvalePrivate::renameSourceAlias(const std::string& alias, const std::string& newName)
{
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    if (_isSourceNameTaken(newName)) {
        RK_LOG(rk::log::Error, category)
            << "Can't rename alias \"" << alias << "\": \"" << newName << "\" is already in use.";
        return false;
    }
    const boost::shared_ptr<NodeSourceAlias> node = findIn(_sourceAliases, alias);
    if (!node) {
        RK_LOG(rk::log::Error, category) << "Can't rename alias \"" << alias << "\": alias unknown.";
        return false;
    }
    _sourceAliases.emplace(newName, node);
    try {
        _aliasesOfSource[node->getSource()->getName()].insert(newName);
    } catch (...) {
        _sourceAliases.erase(newName);
        throw;
    }
    _aliasesOfSource[node->getSource()->getName()].erase(alias);
    _sourceAliases.erase(alias);
    return true;
}

bool CorvalePrivate::retargetSourceAlias(const std::string& alias, const std::string& source)
{
    boost::shared_ptr<NodeSource> former; // ends after the locks
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    const boost::shared_ptr<NodeSourceAlias> node = findIn(_sourceAliases, alias);
    const boost::shared_ptr<NodeSource> target = findIn(_sources, source);
    if (!node || !target) {
        RK_LOG(rk::log::Error, category)
            << "Can't retarget alias \"" << alias << "\" to  \"" << source << "\": alias or target unknown";
        return false;
    }
    former = node->getSource();
    _aliasesOfSource[source].insert(alias); // the one step that may fail
    const auto names = _aliasesOfSource.find(former->getName());
    if (names != _aliasesOfSource.end() && names->first != source)
        names->second.erase(alias);
    node->setSource(target);
    _sourceBoundCache.clear();
    return true;
}

// Aliases of a deleted source stay and go on showing its node. The name of a deleted alias stays among
// those of its target, where `isSourceBound` still looks at it.
bool CorvalePrivate::deleteSource(const std::string& name)
{
    boost::shared_ptr<NodeSource> dropped; // ends after the locks
    const boost::lock_guard sources(_sourcesMutex);
    const boost::lock_guard aliases(_aliasesMutex);
    if ((dropped = findIn(_sources, name))) {
        _aliasesOfSource.erase(name);
        _sources.erase(name);
        return true;
    }
    if ((dropped = findIn(_sourceAliases, name))) {
        _sourceAliases.erase(name);
        return true;
    }
    RK_LOG(rk::log::Error, category) << "Can't delete source \"" << name << "\": source unknown.";
    return false;
}

// The former value ends after the engine's locks are released: it may be a large one, and a host's.
bool CorvalePrivate::setData(const std::string& name, boost::shared_ptr<Data> data)
{
    boost::shared_ptr<NodeSource> source;
    if (!hasColon(name)) {
        const boost::lock_guard sources(_sourcesMutex);
        source = findIn(_sources, name);
    } else {
        const boost::lock_guard processes(_processesMutex);
        const auto [processName, sourceName] = splitString(":", name);
        const boost::shared_ptr<Process> process = _findProcess(processName);
        if (!process) {
            RK_LOG(rk::log::Error, category) << "Can't set data for source \"" << name << "\": process \""
                                             << processName << "\" not found.";
            return false;
        }
        source = process->getSources().at(sourceName);
    }
    if (source)
        return source->setData(data);
    RK_LOG(rk::log::Error, category) << "Can't set data for source \"" << name << "\": source unknown.";
    return false;
}

boost::shared_ptr<Data> CorvalePrivate::getSourceData(const std::string& name) const
{
    boost::shared_ptr<NodeSource> source;
    if (!hasColon(name)) {
        const boost::lock_guard sources(_sourcesMutex);
        const boost::lock_guard aliases(_aliasesMutex);
        source = findIn(_sources, name);
        if (!source)
            source = findIn(_sourceAliases, name);
    } else {
        const boost::lock_guard processes(_processesMutex);
        const auto [processName, sourceName] = splitString(":", name);
        const boost::shared_ptr<Process> process = _findProcess(processName);
        if (!process) {
            RK_LOG(rk::log::Error, category) << "Can't get data from source \"" << name << "\": process \""
                                             << processName << "\" unknown.";
            return boost::shared_ptr<Data>();
        }
        source = findIn(process->getSources(), sourceName);
    }
    if (source)
        return source->getData();
    RK_LOG(rk::log::Error, category) << "Can't get data from source \"" << name << "\": source unknown.";
    return boost::shared_ptr<Data>();
}

} // namespace ZR::Corvale
