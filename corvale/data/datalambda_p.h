#pragma once

#include "corvale/data/orderedmutex.h"

#include <boost/shared_ptr.hpp>
#include <boost/thread/thread.hpp>

#include <utility>
#include <vector>

namespace ZR::Corvale {

class Data;
class Filter;
class NodeFilter;
class NodeSource;

namespace Type {

/// The private graph of a lambda: one filter node, and one source for each of its inputs.
class Lambda_p
{
public:
    explicit Lambda_p(boost::shared_ptr<Filter> filter);
    ~Lambda_p();

    std::vector<boost::shared_ptr<Data>> apply(std::vector<boost::shared_ptr<Data>> parameters);
    void curry(std::vector<boost::shared_ptr<Data>> parameters);
    boost::shared_ptr<Lambda_p> clone();

private:
    class Caller;

    std::vector<boost::shared_ptr<Data>> _compute(std::vector<boost::shared_ptr<Data>>& parameters);
    boost::shared_ptr<Lambda_p> _copy(bool withFreeValues);

    const boost::shared_ptr<Filter> _filter;
    const boost::shared_ptr<NodeFilter> _node;
    std::vector<boost::shared_ptr<NodeSource>> _sources; // one an input; fixed after construction

    // All calls of one graph use the same keys, so that only one thread may be inside it.
    OrderedMutex<LockRank::Lambda> _lock;
    boost::thread::id _caller; // guarded by _lock
    unsigned int _calls = 0;   // of _caller; guarded by _lock
    bool _fresh = true;        // nothing was computed yet; of _caller alone
    bool _broken = false;      // an exception ended a call under way; of _caller alone
    std::vector<std::pair<bool, boost::shared_ptr<Data>>>
        _parameters; // curried, and with what; guarded by _lock
};

} // namespace Type
} // namespace ZR::Corvale
