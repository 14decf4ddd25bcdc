#include "corvale/engine/corvale.h"

#include "corvale/data/data.h"
#include "corvale/engine/corvale_p.h"
#include "corvale/filter/userfilter.h"

#include <boost/make_shared.hpp>

namespace ZR::Corvale {

Corvale::Corvale(unsigned int threads) : _private(boost::make_shared<CorvalePrivate>(threads)) {}

bool Corvale::loadProgram(const std::string& program)
{
    return _private->loadProgram(program, this, "");
}

bool Corvale::loadProgramFromFile(const std::string& path)
{
    return _private->loadProgramFromFile(path, this);
}

bool Corvale::startScheduler()
{
    return _private->startScheduler();
}

bool Corvale::stopScheduler()
{
    return _private->stopScheduler();
}

std::vector<std::string> Corvale::getScheduledJobs() const
{
    return _private->getScheduledJobs();
}

std::string Corvale::getInstrumentationResult() const
{
    return _private->getInstrumentationResult();
}

std::vector<std::string> Corvale::getFilters() const
{
    return _private->getFilters();
}

bool Corvale::isFilter(const std::string& name) const
{
    return _private->isFilter(name);
}

std::string Corvale::getFilterDescription(const std::string& name) const
{
    return _private->getFilterDescription(name);
}

std::vector<std::string> Corvale::getFilterInputs(const std::string& name) const
{
    return _private->getFilterInputs(name);
}

std::vector<std::string> Corvale::getFilterOutputs(const std::string& name) const
{
    return _private->getFilterOutputs(name);
}

bool Corvale::createFilter(boost::shared_ptr<UserFilter> userFilter)
{
    return _private->createFilter(userFilter);
}

bool Corvale::createFilter(const std::string& name, const PairList& filters, const LinkList& links,
                           const ExportList& exportedInputs, const ExportList& exportedOutputs)
{
    return _private->createFilter(name, filters, links, exportedInputs, exportedOutputs);
}

boost::shared_ptr<Type::Lambda> Corvale::createLambda(const std::string& name) const
{
    return _private->createLambda(name);
}

bool Corvale::createClassificationFilter(const std::string& name, ClassificationType type,
                                         const std::string& file)
{
    return _private->createClassificationFilter(name, type, file);
}

bool Corvale::deleteFilter(const std::string& name)
{
    return _private->deleteFilter(name);
}

std::string Corvale::dumpFilter(const std::string& name, int depth) const
{
    return _private->dumpFilter(name, depth);
}

std::vector<std::string> Corvale::getSources() const
{
    return _private->getSources();
}

bool Corvale::createSource(const std::string& name)
{
    return _private->createSource(name);
}

bool Corvale::createSourceFromProcessSink(const std::string& name, const std::string& sink)
{
    return _private->createSourceFromProcessSink(name, sink);
}

bool Corvale::createSourceAlias(const std::string& alias, const std::string& source)
{
    return _private->createSourceAlias(alias, source);
}

bool Corvale::renameSourceAlias(const std::string& alias, const std::string& newName)
{
    return _private->renameSourceAlias(alias, newName);
}

bool Corvale::retargetSourceAlias(const std::string& alias, const std::string& source)
{
    return _private->retargetSourceAlias(alias, source);
}

bool Corvale::isSourceBound(const std::string& name) const
{
    return _private->isSourceBound(name);
}

float Corvale::getSourceFrequency(const std::string& name) const
{
    return _private->getSourceFrequency(name);
}

bool Corvale::setData(const std::string& name, boost::shared_ptr<Data> data)
{
    return _private->setData(name, data);
}

boost::shared_ptr<Data> Corvale::getSourceData(const std::string& name) const
{
    return _private->getSourceData(name);
}

bool Corvale::deleteSource(const std::string& name)
{
    return _private->deleteSource(name);
}

std::vector<std::string> Corvale::getProcesses() const
{
    return _private->getProcesses();
}

bool Corvale::isProcess(const std::string& name) const
{
    return _private->isProcess(name);
}

bool Corvale::createProcess(const std::string& name, const std::string& filter, const PairList& inputs,
                            const PairList& outputs, const PairList& events, const PairList& declarations,
                            unsigned int priority, float frequency)
{
    return _private->createProcess(name, filter, inputs, outputs, events, declarations, priority, frequency);
}

bool Corvale::renameProcess(const std::string& name, const std::string& newName)
{
    return _private->renameProcess(name, newName);
}

bool Corvale::deleteProcess(const std::string& name)
{
    return _private->deleteProcess(name);
}

bool Corvale::enableProcess(const std::string& name)
{
    return _private->enableProcess(name);
}

bool Corvale::disableProcess(const std::string& name)
{
    return _private->disableProcess(name);
}

bool Corvale::resetProcess(const std::string& name)
{
    return _private->resetProcess(name);
}

bool Corvale::isProcessEnable(const std::string& name) const
{
    return _private->isProcessEnable(name);
}

bool Corvale::isProcessZombie(const std::string& name) const
{
    return _private->isProcessZombie(name);
}

unsigned int Corvale::getProcessPriority(const std::string& name) const
{
    return _private->getProcessPriority(name);
}

bool Corvale::setProcessPriority(const std::string& name, unsigned int priority)
{
    return _private->setProcessPriority(name, priority);
}

float Corvale::getProcessFrequency(const std::string& name) const
{
    return _private->getProcessFrequency(name);
}

bool Corvale::setProcessFrequency(const std::string& name, float frequency)
{
    return _private->setProcessFrequency(name, frequency);
}

std::string Corvale::getProcessDescription(const std::string& name) const
{
    return _private->getProcessDescription(name);
}

bool Corvale::setProcessDescription(const std::string& name, const std::string& description)
{
    return _private->setProcessDescription(name, description);
}

std::vector<std::string> Corvale::getProcessSources(const std::string& name) const
{
    return _private->getProcessSources(name);
}

std::vector<std::string> Corvale::getProcessSinks(const std::string& name) const
{
    return _private->getProcessSinks(name);
}

std::vector<std::string> Corvale::getProcessAggregatedSinks(const std::string& name) const
{
    return _private->getProcessAggregatedSinks(name);
}

boost::shared_ptr<Data> Corvale::getData(const std::string& sink)
{
    return _private->getData(sink);
}

boost::shared_ptr<Data> Corvale::getLastData(const std::string& sink) const
{
    return _private->getLastData(sink);
}

bool Corvale::createEvent(const std::string& sink, boost::function<void(boost::shared_ptr<Data>)> callback)
{
    return _private->createEvent(sink, callback);
}

} // namespace ZR::Corvale
