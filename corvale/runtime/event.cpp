#include "corvale/runtime/event.h"

#include "corvale/data/data.h"
#include "corvale/engine/scheduler.h"
#include "corvale/runtime/process.h"

namespace ZR::Corvale {

Event::Event(boost::shared_ptr<Process> process, Scheduler* scheduler)
    : _process(process),
      _scheduler(scheduler)
{
}

Event::Event(boost::function1<void, boost::shared_ptr<Data>> callback)
    : _scheduler(nullptr),
      _callback(callback)
{
}

void Event::raise(boost::shared_ptr<Data> data)
{
    if (_process && _scheduler)
        _scheduler->addProcessToScheduledProcessList(_process);
    if (_callback)
        _callback(data);
}

} // namespace ZR::Corvale
