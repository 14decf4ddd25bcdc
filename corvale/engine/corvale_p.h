#pragma once

#include "corvale/data/orderedmutex.h"
#include "corvale/engine/corvale.h"
#include "corvale/engine/scheduler.h"
#include "corvale/engine/weakregistry.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/parser/parser.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace ZR::Corvale {

class Filter;
class FilterComposite;
class NodeSource;
class NodeSourceAlias;
class Process;

/// The engine behind the facade: its tables and what is derived from them.
///
/// The themes stand in sources of their own: life and filters (corvale_p), sources (sources), processes
/// (processes), composite filters (composites), processes under construction (processbuilder),
/// dependencies and frequencies (dependencies), program files and plug-ins (programfiles).
///
/// Threads: thread-safe; the order of the locks is that of `LockRank`. Objects that leave a table end
/// after its lock is released, since what they hold may be a host's.
class CorvalePrivate
{
public:
    using Pair = Corvale::Pair;
    using PairList = Corvale::PairList;
    using LinkList = Corvale::LinkList;
    using ExportList = Corvale::ExportList;

    explicit CorvalePrivate(unsigned int threads);
    ~CorvalePrivate();

    // What the facade forwards; see there.

    /// `handle` is what a plug-in's entry gets: the host's `Corvale`. Imports resolve against `basePath`.
    bool loadProgram(const std::string& program, void* handle, const std::string& basePath);
    bool loadProgramFromFile(const std::string& path, void* handle);

    bool startScheduler();
    bool stopScheduler();
    std::vector<std::string> getScheduledJobs() const;
    std::string getInstrumentationResult() const;

    std::vector<std::string> getFilters() const;
    bool isFilter(const std::string& name) const;
    std::string getFilterDescription(const std::string& name) const;
    std::vector<std::string> getFilterInputs(const std::string& name) const;
    std::vector<std::string> getFilterOutputs(const std::string& name) const;
    bool createFilter(boost::shared_ptr<UserFilter> userFilter);
    bool createFilter(const std::string& name, const PairList& filters, const LinkList& links,
                      const ExportList& exportedInputs, const ExportList& exportedOutputs);
    boost::shared_ptr<Type::Lambda> createLambda(const std::string& name) const;
    bool createClassificationFilter(const std::string& name, ClassificationType type,
                                    const std::string& file);
    bool deleteFilter(const std::string& name);
    std::string dumpFilter(const std::string& name, int depth) const;

    std::vector<std::string> getSources() const;
    bool createSource(const std::string& name);
    bool createSourceFromProcessSink(const std::string& name, const std::string& sink);
    bool createSourceAlias(const std::string& alias, const std::string& source);
    bool renameSourceAlias(const std::string& alias, const std::string& newName);
    bool retargetSourceAlias(const std::string& alias, const std::string& source);
    bool isSourceBound(const std::string& name) const;
    float getSourceFrequency(const std::string& name) const;
    bool setData(const std::string& name, boost::shared_ptr<Data> data);
    boost::shared_ptr<Data> getSourceData(const std::string& name) const;
    bool deleteSource(const std::string& name);

    std::vector<std::string> getProcesses() const;
    bool isProcess(const std::string& name) const;
    bool createProcess(const std::string& name, const std::string& filter, const PairList& inputs,
                       const PairList& outputs, const PairList& events, const PairList& declarations,
                       unsigned int priority, float frequency);
    bool renameProcess(const std::string& name, const std::string& newName);
    bool deleteProcess(const std::string& name);
    bool enableProcess(const std::string& name);
    bool disableProcess(const std::string& name);
    bool resetProcess(const std::string& name);
    bool isProcessEnable(const std::string& name) const;
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

    boost::shared_ptr<Data> getData(const std::string& sink);
    boost::shared_ptr<Data> getLastData(const std::string& sink) const;
    bool createEvent(const std::string& sink, boost::function<void(boost::shared_ptr<Data>)> callback);

    // What the scheduler asks.

    /// The processes that stand in a schedule, by name: active ones of a priority above 0.
    Scheduler::ByName getSchedulableProcesses();
    /// Those of them that came since the last call of this or of `getSchedulableProcesses`. False if
    /// processes were renamed since: then only a look at all tells.
    bool takeAddedProcesses(Scheduler::ByName& added);
    /// Microseconds that a worker may sleep, from 0 to 100,000: until the next process is due.
    long long _getNextComputationTime() const;
    /// The highest frequency, in hertz, of what can be scheduled; 0 if there is nothing.
    float _getComputationMaxFrequency() const;

    /// Makes zombies of the disabled processes that active ones read, directly or not. `clear` begins
    /// with none. Takes `_processesMutex`.
    void _computeDependency(bool clear);

private:
    friend class ProcessBuilder;

    boost::shared_ptr<Filter> _findFilter(const std::string& name) const; // takes _filtersMutex
    bool _loadProgramFile(const std::string& path, void* handle);
    bool _loadPlugin(const std::string& path, void* handle);
    bool _isLoaded(const std::string& path);
    bool _markLoaded(const std::string& path); // false if it was marked already

    // Caller holds _sourcesMutex and _aliasesMutex.
    bool _isSourceNameTaken(const std::string& name) const;

    // Caller holds _processesMutex.
    boost::shared_ptr<Process> _findProcess(const std::string& name) const;
    bool _isRead(const std::string& source) const;
    float _frequencyOf(const std::string& source) const;

    // Applies `use` to a process under _processesMutex. Logs `prefix` name `suffix` and gives `missing`
    // if there is none.
    template <typename Result, typename Use>
    Result _withProcess(const std::string& name, const char* operation, const char* prefix,
                        const char* suffix, Result missing, Use use) const;
    // Reads "process:sink" by `read(process, sink)` under _processesMutex.
    template <typename Read>
    boost::shared_ptr<Data> _readSink(const std::string& sink, const char* operation, Read read) const;
    bool _setEnabled(const std::string& name, bool enabled, const char* operation, const char* prefix);
    void _forgetBoundSources();
    void _rebuildSchedule(bool clearZombies); // and forgets which sources are bound
    void _scheduleNew(const std::string& name);
    void _withdraw(const std::string& name, const boost::shared_ptr<Process>& process);

    // The processes, neither among the readers nor active by that condition, that the readers read,
    // directly or not. Caller holds _processesMutex.
    template <typename IsActive>
    std::set<Process*> _inactiveUpstream(std::vector<Process*> readers, IsActive isActive) const;

    // Declared in the order in which they are built; they end in the reverse one.
    Parser _parser;
    Scheduler _scheduler;
    MemoryManager _memoryManager;

    mutable OrderedMutex<LockRank::Filters> _filtersMutex{this};
    std::map<std::string, boost::shared_ptr<Filter>> _filters; // guarded by _filtersMutex
    // What a faulty graph leaves in one may be a lambda of it. Guarded by _filtersMutex.
    WeakRegistry<FilterComposite> _everyComposite;

    mutable OrderedMutex<LockRank::Sources> _sourcesMutex{this};
    std::map<std::string, boost::shared_ptr<NodeSource>> _sources; // guarded by _sourcesMutex
    mutable std::map<std::string, bool> _sourceBoundCache;         // guarded by _sourcesMutex

    mutable OrderedMutex<LockRank::Aliases> _aliasesMutex{this};
    std::map<std::string, boost::shared_ptr<NodeSourceAlias>> _sourceAliases; // guarded by _aliasesMutex
    std::map<std::string, std::set<std::string>> _aliasesOfSource;            // guarded by _aliasesMutex

    mutable OrderedMutex<LockRank::Processes> _processesMutex{this};
    std::map<std::string, boost::shared_ptr<Process>> _processes; // guarded by _processesMutex
    std::set<std::string> _addedProcesses; // names not in the schedule yet; guarded by _processesMutex
    bool _connectionsMoved = false;        // since the last look at all of them; guarded by _processesMutex
    // Their events may hold one another. Guarded by _processesMutex.
    WeakRegistry<Process> _everyProcess;

    OrderedMutex<LockRank::LoadedFiles> _loadedFilesMutex{this};
    std::set<std::string> _loadedFiles; // paths as they were written; guarded by _loadedFilesMutex
};

} // namespace ZR::Corvale
