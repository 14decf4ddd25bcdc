#include "corvale/data/datalambda.h"

#include "corvale/data/data.h"
#include "corvale/data/datalambda_p.h"
#include "corvale/filter/filter.h"
#include "corvale/filter/filteradapter.h"
#include "corvale/filter/userfilter.h"
#include "corvale/runtime/callstack.h"
#include "corvale/runtime/nodefilter.h"
#include "corvale/runtime/nodesource.h"
#include "corvale/runtime/port.h"
#include "corvale/runtime/stringhash.h"
#include "rk/log.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include <utility>

namespace ZR::Corvale::Type {

namespace {

const std::string category = rk::log::addCategory("corvale.lambda");

// Whether there is something to work on; if not, after an error line.
template <typename Pointer>
bool isGiven(const Pointer& pointer, const char* operation)
{
    if (!pointer)
        RK_LOG(rk::log::Error, category) << operation << "(): there is no filter.";
    return pointer != nullptr;
}

// The same keys at each call: what a filter keeps stays with the lambda.
const StringHash& callHash()
{
    static const StringHash hash("___@LAMBDA@___");
    return hash;
}

} // namespace

Lambda::Lambda(boost::shared_ptr<Lambda_p> lambda) : _lambda(lambda) {}

Lambda::~Lambda() = default;

boost::shared_ptr<Lambda> Lambda::createLambda(boost::shared_ptr<Filter> filter)
{
    if (!isGiven(filter, "createLambda"))
        return boost::shared_ptr<Lambda>();
    return boost::make_shared<Lambda>(boost::make_shared<Lambda_p>(filter));
}

boost::shared_ptr<Lambda> Lambda::createLambda(boost::shared_ptr<UserFilter> userFilter)
{
    if (!isGiven(userFilter, "createLambda"))
        return boost::shared_ptr<Lambda>();
    return createLambda(boost::shared_ptr<Filter>(boost::make_shared<FilterAdapter>(userFilter)));
}

std::vector<boost::shared_ptr<Data>> Lambda::apply(std::vector<boost::shared_ptr<Data>> parameters)
{
    return isGiven(_lambda, "apply") ? _lambda->apply(std::move(parameters))
                                     : std::vector<boost::shared_ptr<Data>>();
}

void Lambda::curry(std::vector<boost::shared_ptr<Data>> parameters)
{
    if (isGiven(_lambda, "curry"))
        _lambda->curry(parameters);
}

boost::shared_ptr<Lambda> Lambda::clone()
{
    if (!isGiven(_lambda, "clone"))
        return boost::shared_ptr<Lambda>();
    return boost::make_shared<Lambda>(_lambda->clone());
}

Lambda_p::Lambda_p(boost::shared_ptr<Filter> filter)
    : _filter(filter),
      _node(boost::make_shared<NodeFilter>(filter->getName(), filter))
{
    for (const boost::shared_ptr<Port>& input : _node->getInputs()) {
        _sources.push_back(boost::make_shared<NodeSource>(input->getName()));
        input->attach(_sources.back()->getOutput("out"));
        _parameters.emplace_back(false, boost::shared_ptr<Data>());
    }
}

Lambda_p::~Lambda_p() = default;

// Takes the graph for the calling thread, which may already be inside it: a lambda can reach itself
// through its own parameters. What an exception left in it goes with the last call.
class Lambda_p::Caller
{
public:
    explicit Caller(Lambda_p& lambda) : _lambda(lambda)
    {
        const boost::lock_guard guard(_lambda._lock);
        _entered = _lambda._calls == 0 || _lambda._caller == boost::this_thread::get_id();
        if (_entered) {
            _lambda._caller = boost::this_thread::get_id();
            ++_lambda._calls;
        }
    }
    ~Caller()
    {
        if (!_entered)
            return;
        // This thread is still the only one inside, and what ends here may be a host's: no lock.
        if (_lambda._calls == 1 && std::exchange(_lambda._broken, false))
            _lambda._node->abandon(callHash(), callHash());
        const boost::lock_guard guard(_lambda._lock);
        --_lambda._calls;
    }
    bool entered() const { return _entered; }

private:
    Lambda_p& _lambda;
    bool _entered;
};

std::vector<boost::shared_ptr<Data>> Lambda_p::apply(std::vector<boost::shared_ptr<Data>> parameters)
{
    if (stackIsShort()) {
        RK_LOG(rk::log::Error, category) << "apply(): too many lambdas call one another.";
        return std::vector<boost::shared_ptr<Data>>(_node->getOutputs().size());
    }
    const Caller caller(*this);
    if (!caller.entered())
        return _copy(true)->apply(parameters);
    try {
        return _compute(parameters);
    } catch (...) {
        _broken = true;
        throw;
    }
}

// The parameters become the former values, which end after the lock: they may be a host's.
std::vector<boost::shared_ptr<Data>> Lambda_p::_compute(std::vector<boost::shared_ptr<Data>>& parameters)
{
    {
        const boost::lock_guard guard(_lock);
        std::size_t next = 0;
        for (std::size_t i = 0; i < _sources.size() && next < parameters.size(); ++i)
            if (!_parameters[i].first)
                _sources[i]->exchangeData(parameters[next++]);
    }
    const StringHash& hash = callHash();
    if (std::exchange(_fresh, false)) // of a former lambda, whose node may have had this one's address
        _node->forget(hash, hash);
    for (std::size_t i = 0; i < _node->getOutputs().size(); ++i)
        _node->synchronize(hash, hash, 0);
    std::vector<boost::shared_ptr<Data>> results;
    for (const boost::shared_ptr<Port>& output : _node->getOutputs())
        results.push_back(_node->requestData(hash, hash, 0, output));
    for (std::size_t i = 0; i < _node->getOutputs().size(); ++i)
        _node->synchronizeRelease(hash, hash, 0);
    return results;
}

// A bound input is stepped over by one, a free one by two: every second free input stays free.
void Lambda_p::curry(std::vector<boost::shared_ptr<Data>> parameters)
{
    if (parameters.empty() || _sources.empty())
        return;
    const boost::shared_ptr<Data>& value = parameters.front();
    std::vector<boost::shared_ptr<Data>> former(_sources.size(), value); // ends after the lock
    const boost::lock_guard guard(_lock);
    std::size_t i = 0;
    while (i < _sources.size()) {
        const bool bound = _parameters[i].first;
        if (!bound && value) {
            _sources[i]->exchangeData(former[i]);
            _parameters[i] = {true, value};
        }
        i += bound ? 1 : 2;
    }
}

boost::shared_ptr<Lambda_p> Lambda_p::clone()
{
    return _copy(false);
}

boost::shared_ptr<Lambda_p> Lambda_p::_copy(bool withFreeValues)
{
    const boost::shared_ptr<Lambda_p> copy = boost::make_shared<Lambda_p>(_filter);
    const boost::lock_guard guard(_lock);
    for (std::size_t i = 0; i < _sources.size(); ++i) {
        copy->_parameters[i] = _parameters[i];
        if (_parameters[i].first)
            copy->_sources[i]->setData(_parameters[i].second);
        else if (withFreeValues)
            copy->_sources[i]->setData(_sources[i]->getData());
    }
    return copy;
}

} // namespace ZR::Corvale::Type
