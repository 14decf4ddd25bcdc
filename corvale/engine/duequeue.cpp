#include "corvale/engine/duequeue.h"

#include "corvale/data/data.h"
#include "corvale/runtime/clock.h"
#include "corvale/runtime/process.h"

#include <algorithm>

namespace ZR::Corvale {

namespace {

// Periods may be as long as 64 bits hold; a year is far enough for a queue that is made anew all the time.
constexpr std::int64_t farAway = 31557600000000;

std::int64_t dueTime(const Process& process, std::int64_t now)
{
    const std::int64_t left = wrappingDifference(process.getDueTime(), now);
    return wrappingSum(now, std::clamp<std::int64_t>(left, 0, farAway));
}

} // namespace

void DueQueue::assign(const std::vector<boost::shared_ptr<Process>>& processes, std::int64_t now)
{
    _byTime.clear();
    _times.clear();
    for (const boost::shared_ptr<Process>& process : processes)
        add(process, now);
}

void DueQueue::add(const boost::shared_ptr<Process>& process, std::int64_t now)
{
    if (process->getFrequency() > 0.0f && _times.count(process.get()) == 0)
        _place(process, dueTime(*process, now));
}

void DueQueue::refresh(const boost::shared_ptr<Process>& process, std::int64_t now)
{
    if (_times.count(process.get()) != 0)
        _place(process, dueTime(*process, now));
}

std::vector<boost::shared_ptr<Process>> DueQueue::takeDue(std::int64_t now)
{
    std::vector<boost::shared_ptr<Process>> due;
    while (!_byTime.empty() && _byTime.begin()->first <= now) {
        const boost::shared_ptr<Process> process = _byTime.begin()->second;
        const std::int64_t actual = dueTime(*process, now); // a host may have computed it meanwhile
        if (actual > now) {
            _place(process, actual);
            continue;
        }
        const double period = std::clamp(1e6 / static_cast<double>(process->getFrequency()), 1.0, 1e13);
        _place(process, wrappingSum(now, static_cast<std::int64_t>(period)));
        due.push_back(process);
    }
    return due;
}

boost::shared_ptr<Process> DueQueue::first() const
{
    return _byTime.empty() ? boost::shared_ptr<Process>() : _byTime.begin()->second;
}

long long DueQueue::untilNext(std::int64_t now, long long longest) const
{
    return _byTime.empty()
               ? longest
               : std::clamp<long long>(wrappingDifference(_byTime.begin()->first, now), 0, longest);
}

void DueQueue::_place(const boost::shared_ptr<Process>& process, std::int64_t due)
{
    const auto [known, added] = _times.emplace(process.get(), due);
    if (!added)
        _byTime.erase({known->second, process});
    known->second = due;
    _byTime.emplace(due, process);
}

} // namespace ZR::Corvale
