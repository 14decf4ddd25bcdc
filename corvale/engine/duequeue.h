#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered_map.hpp>

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace ZR::Corvale {

class Process;

/// The processes of a schedule by the time at which their period is over, each once.
///
/// With a thousand processes some are due every few dozen microseconds: looking through all of them each
/// time would cost more than the looks themselves.
/// Times are in microseconds since the epoch. Threads: none of its own; its owner guards it.
class DueQueue
{
public:
    /// Begins anew with these processes; one that stands several times counts once, one that stands
    /// still is left out.
    void assign(const std::vector<boost::shared_ptr<Process>>& processes, std::int64_t now);
    /// One process more, under the same conditions.
    void add(const boost::shared_ptr<Process>& process, std::int64_t now);
    /// Asks a process of the queue again when it is due, which its computation has moved. Nothing happens
    /// for another one.
    void refresh(const boost::shared_ptr<Process>& process, std::int64_t now);
    /// The processes whose time has come. Until they are refreshed they count as due a period later.
    std::vector<boost::shared_ptr<Process>> takeDue(std::int64_t now);
    /// The one that is due first; null if there is none.
    boost::shared_ptr<Process> first() const;
    /// Microseconds until the first is due, 0 if one is overdue; at most `longest`.
    long long untilNext(std::int64_t now, long long longest) const;

private:
    void _place(const boost::shared_ptr<Process>& process, std::int64_t due);

    std::set<std::pair<std::int64_t, boost::shared_ptr<Process>>> _byTime;
    boost::unordered_map<const Process*, std::int64_t> _times;
};

} // namespace ZR::Corvale
