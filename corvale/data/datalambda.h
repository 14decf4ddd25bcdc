#pragma once

#include <boost/shared_ptr.hpp>

#include <vector>

namespace ZR::Corvale {

class Data;
class Filter;
class UserFilter;

namespace Type {

class Lambda_p;

/// A filter as a value: it can sit in a source, travel through ports, be partly bound and be called.
///
/// A call runs the filter on the caller's thread through a private graph of one node with one source an
/// input, by the protocol that a process uses.
/// Ownership: keeps its filter alive, also once it is deleted from the engine; but a filter that keeps
/// memory needs the engine itself, so nothing is applied once that has ended. Copies of a `Data` share
/// the lambda; `clone` separates.
/// Threads: one thread at a time. A call that meets another one under way on the same object computes
/// on a copy of it, so that neither disturbs the other.
/// Failure: an input without value that the filter needs gives null outputs; nothing is logged. A lambda
/// without filter gives no value, or a null pointer, and one error line. What a filter throws passes through.
class Lambda
{
public:
    explicit Lambda(boost::shared_ptr<Lambda_p> lambda);
    ~Lambda();

    /// A lambda over a filter of the engine.
    static boost::shared_ptr<Lambda> createLambda(boost::shared_ptr<Filter> filter);
    /// A lambda over a host's filter, which must not have local data: give such a one to the engine first.
    static boost::shared_ptr<Lambda> createLambda(boost::shared_ptr<UserFilter> userFilter);

    /// Gives the free inputs the parameters, in order, and computes: one value per output, null for none.
    /// Surplus parameters are ignored; an input that gets none keeps what it had in an earlier call.
    std::vector<boost::shared_ptr<Data>> apply(std::vector<boost::shared_ptr<Data>> parameters);
    /// Binds the first of `parameters`, if it is not null, to the first free input, and to each further
    /// one that stands after a free input which is passed over: of three free inputs the first and third.
    void curry(std::vector<boost::shared_ptr<Data>> parameters);
    /// A lambda over the same filter with the same bindings, without the values of earlier calls.
    boost::shared_ptr<Lambda> clone();

private:
    const boost::shared_ptr<Lambda_p> _lambda;
};

} // namespace Type
} // namespace ZR::Corvale
