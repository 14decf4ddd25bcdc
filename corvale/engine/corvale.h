#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace ZR::Corvale {

class CorvalePrivate;
class Data;
class UserFilter;
namespace Type {
class Lambda;
}

/// The classifiers that `createClassificationFilter` can make.
enum ClassificationType : int
{
    KNN = 0
};

/// The engine: a host creates one, feeds its sources, describes processes by program texts or by
/// calls, and reads their sinks.
///
///     host --setData--> source --> [ process: graph of filters ] --> sink --getData, event--> host
///
/// A process computes on a worker thread when it is due and one of its sources has changed, or in the
/// host's own thread in `getData`. A sink, and a source inside a process, is addressed as
/// "process:sink"; a plain name means a global source or alias.
///
/// Ownership: the engine owns its filters, sources, aliases and processes by shared pointer. Deleting
/// a name does not end what running processes still hold.
/// Threads: every operation is thread-safe, but for one: programs are to be loaded by one thread at a
/// time. `stopScheduler`, and what waits for a process's own computation, must not be called from a
/// callback (see docs/threads.md).
/// Failure: false, null, 0 or an empty result, and one error line that begins with the operation and
/// its arguments. Exceptions are named at the operations that throw them.
class Corvale
{
public:
    using Pair = std::pair<std::string, std::string>;
    using PairList = std::list<Pair>;
    using LinkList = std::list<std::pair<Pair, Pair>>;
    using ExportList = std::list<std::pair<Pair, std::string>>;

    /// Starts the worker threads, 0 being allowed: then only `getData` computes.
    explicit Corvale(unsigned int threads = 2);

    // Programs

    /// Runs the statements of a program text in order. False at the first that fails; what stands
    /// before it has taken effect. Passes on what `setData` throws.
    bool loadProgram(const std::string& program);
    /// Loads a program (.fgs, .FGS, .txt, .TXT) once, or a plug-in (.so, .dylib), whose filters are in
    /// the table afterwards although the result is false.
    bool loadProgramFromFile(const std::string& path);

    // Scheduler

    bool startScheduler();
    /// Returns once every worker has ended its computation. A no-op when stopped.
    bool stopScheduler();
    /// The names of one pass over the schedule, a process as often as its share.
    std::vector<std::string> getScheduledJobs() const;
    /// Always empty: the scheduler keeps no counters.
    std::string getInstrumentationResult() const;

    // Filters

    /// All names in byte order.
    std::vector<std::string> getFilters() const;
    bool isFilter(const std::string& name) const;
    std::string getFilterDescription(const std::string& name) const;
    /// One text per port: "optional ", "[Type, Type] " where types are declared, the name.
    std::vector<std::string> getFilterInputs(const std::string& name) const;
    std::vector<std::string> getFilterOutputs(const std::string& name) const;
    /// Adds a host's filter; replaces one of the same name.
    bool createFilter(boost::shared_ptr<UserFilter> userFilter);
    /// Adds a composite filter.
    /// `filters`: (filter, node name); `links`: ((node, output), (node, input));
    /// `exportedInputs`: ((node, input or "input[default]"), name); `exportedOutputs`: ((node, output),
    /// name).
    bool createFilter(const std::string& name, const PairList& filters, const LinkList& links,
                      const ExportList& exportedInputs, const ExportList& exportedOutputs);
    /// A filter as a value; null if it is unknown.
    boost::shared_ptr<Type::Lambda> createLambda(const std::string& name) const;
    /// Adds a classifier from an XML database. Throws what reading the database throws.
    bool createClassificationFilter(const std::string& name, ClassificationType type,
                                    const std::string& file);
    bool deleteFilter(const std::string& name);
    /// The filter as a graph in the DOT language, opened `depth` levels deep, a negative depth opening
    /// everything; empty if it is unknown.
    std::string dumpFilter(const std::string& name, int depth) const;

    // Sources

    /// The names of the global sources, without aliases.
    std::vector<std::string> getSources() const;
    bool createSource(const std::string& name);
    /// Makes a source that gives what "process:sink" last held, computing that process when it is due.
    bool createSourceFromProcessSink(const std::string& name, const std::string& sink);
    bool createSourceAlias(const std::string& alias, const std::string& source);
    bool renameSourceAlias(const std::string& alias, const std::string& newName);
    bool retargetSourceAlias(const std::string& alias, const std::string& source);
    /// Whether an active process reads a source, directly or through an alias.
    bool isSourceBound(const std::string& name) const;
    /// The highest frequency, in hertz, of the active processes that read a source; 0 if none does.
    float getSourceFrequency(const std::string& name) const;
    /// Gives a global source, or "process:source", its value; null means no value. An alias is not
    /// resolved. Throws `std::out_of_range` for a source that the process does not use.
    bool setData(const std::string& name, boost::shared_ptr<Data> data);
    /// The present value of a source or alias, or of "process:source".
    boost::shared_ptr<Data> getSourceData(const std::string& name) const;
    bool deleteSource(const std::string& name);

    // Processes

    std::vector<std::string> getProcesses() const;
    bool isProcess(const std::string& name) const;
    /// Adds a process around a filter. `inputs`: (input, source expression); `outputs`: (output, sink);
    /// `events`: (sink, process) or ("process:sink", "self"); `declarations`: ("source" or "pulse", name).
    /// `priority` 0 to 8, 0 for never scheduled; `frequency` in hertz, 0 for standing still.
    bool createProcess(const std::string& name, const std::string& filter, const PairList& inputs,
                       const PairList& outputs, const PairList& events, const PairList& declarations,
                       unsigned int priority, float frequency);
    bool renameProcess(const std::string& name, const std::string& newName);
    bool deleteProcess(const std::string& name);
    bool enableProcess(const std::string& name);
    bool disableProcess(const std::string& name);
    /// Forgets all results and kept memory; the process computes at its next chance.
    bool resetProcess(const std::string& name);
    bool isProcessEnable(const std::string& name) const;
    /// Whether a disabled process goes on running because an active one reads it.
    bool isProcessZombie(const std::string& name) const;
    unsigned int getProcessPriority(const std::string& name) const;
    bool setProcessPriority(const std::string& name, unsigned int priority);
    float getProcessFrequency(const std::string& name) const;
    bool setProcessFrequency(const std::string& name, float frequency);
    std::string getProcessDescription(const std::string& name) const;
    bool setProcessDescription(const std::string& name, const std::string& description);
    std::vector<std::string> getProcessSources(const std::string& name) const;
    std::vector<std::string> getProcessSinks(const std::string& name) const;
    std::vector<std::string> getProcessAggregatedSinks(const std::string& name) const;

    // Results

    /// Computes the process in the calling thread if it is due, then reads "process:sink". Passes on
    /// what a filter or a callback throws.
    boost::shared_ptr<Data> getData(const std::string& sink);
    /// What "process:sink" last held, without computing.
    boost::shared_ptr<Data> getLastData(const std::string& sink) const;
    /// Calls back with each value of "process:sink", on the thread that computes it, for as long as the
    /// process lives.
    bool createEvent(const std::string& sink, boost::function<void(boost::shared_ptr<Data>)> callback);

private:
    boost::shared_ptr<CorvalePrivate> _private;
};

} // namespace ZR::Corvale
