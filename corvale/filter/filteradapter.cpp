#include "corvale/filter/filteradapter.h"

#include "corvale/data/data.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filter/userfilter.h"
#include "corvale/parser/parsingtools.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <boost/thread/lock_guard.hpp>

namespace ZR::Corvale {

namespace {
const std::string category = rk::log::addCategory("corvale.filterAdapter");
}

FilterAdapter::FilterAdapter(boost::shared_ptr<UserFilter> userFilter)
    : FilterPrimitive(userFilter->getName()),
      _userFilter(userFilter)
{
    for (const std::string& declaration : _userFilter->getInputs())
        _declareInput(declaration);
    for (const std::string& declaration : _userFilter->getOutputs())
        _declareOutput(declaration);
}

FilterAdapter::~FilterAdapter() = default;

void FilterAdapter::_declareInput(const std::string& declaration)
{
    const std::list<std::string> pieces = blockString('[', ']', declaration);
    const std::vector<std::string> words =
        pieces.empty() || pieces.size() > 2 ? std::vector<std::string>() : splitSpace(pieces.front());
    if (pieces.size() == 1)
        RK_LOG(rk::log::Verbose, category)
            << "Missing type declaration for input " << pieces.front() << " of filter " << _name;

    const bool optional = words.size() == 2 && words.front() == "optional";
    if (words.size() != 1 && !optional) {
        RK_LOG(rk::log::Error, category) << "Can't parse input declaration (" << declaration << ")";
        return;
    }
    const boost::shared_ptr<Port> port = _addInput(words.back());
    if (optional)
        port->setOptional(true);
    if (pieces.size() == 2)
        _addTypes(*port, pieces.back());
}

void FilterAdapter::_addTypes(Port& port, const std::string& types)
{
    for (const std::string& word : splitSpace(types)) {
        const DataType type = Data::getTypeFromName(word);
        if (type != Invalid)
            port.addType(type);
        else
            RK_LOG(rk::log::Error, category)
                << "Invalid input type " << word << " for port " << port.getName() << " of filter " << _name;
    }
}

void FilterAdapter::_declareOutput(const std::string& declaration)
{
    const std::vector<std::string> words = splitSpace(declaration);
    if (words.size() == 1)
        _addOutput(words.front());
    else
        RK_LOG(rk::log::Error, category) << "Can't parse output declaration (" << declaration << ")";
}

std::string FilterAdapter::getDescription() const
{
    return _userFilter->getDescription();
}

std::vector<boost::shared_ptr<Data>>
FilterAdapter::applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs, const StringHash& processHash,
                           const StringHash& scopeHash, long long)
{
    if (!_userFilter->hasLocalData())
        return _userFilter->applyFilter(inputs);

    // Without a memory manager, as in a lambda made of a user filter alone, nothing is kept.
    const boost::lock_guard guard(_adapterLock);
    _userFilter->setLocalData(_memoryManager ? _memoryManager->getData(processHash, scopeHash)
                                             : boost::shared_ptr<Data>());
    std::vector<boost::shared_ptr<Data>> result = _userFilter->applyFilter(inputs);
    if (_memoryManager)
        _memoryManager->setData(processHash, scopeHash, _userFilter->getLocalData());
    return result;
}

void FilterAdapter::forget(const StringHash& processHash, const StringHash& scopeHash)
{
    if (_memoryManager && _userFilter->hasLocalData())
        _memoryManager->setData(processHash, scopeHash, boost::shared_ptr<Data>());
}

} // namespace ZR::Corvale
