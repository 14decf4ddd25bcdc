#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

namespace ZR::Corvale {

class Data;
class Process;
class Scheduler;

/// What a sink fires when it gets a value: a process that is to be looked at next, or a call to the host.
///
/// Ownership: shares its process; the scheduler is not owned and outlives the computations that fire.
/// Threads: immutable. The callback is called on the thread that computes the sink, in the middle of the
/// computation: it must not wait for the process that fires it.
/// Failure: what the callback throws passes through to whoever asked for the computation.
class Event
{
public:
    Event(boost::shared_ptr<Process> process, Scheduler* scheduler);
    explicit Event(boost::function1<void, boost::shared_ptr<Data>> callback);

    /// Schedules the process, if there are a process and a scheduler; calls back with `data`, if there is
    /// a callback.
    void raise(boost::shared_ptr<Data> data);

private:
    const boost::shared_ptr<Process> _process;
    Scheduler* const _scheduler; // not owned
    const boost::function1<void, boost::shared_ptr<Data>> _callback;
};

} // namespace ZR::Corvale
