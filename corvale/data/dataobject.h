#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/unordered_map.hpp>

#include <string>

namespace ZR::Corvale {

class Data;

namespace Type {

/// Something recognised: where it is, in a region of type `R`, and values attached to it by key.
///
/// Threads: thread-safe through its operations, which lock `mutex`; what a shared pointer leads to is
/// outside. Failure: none. What is missing gives null or false, and removing it one warning.
template <typename R>
class Object
{
public:
    virtual std::string toString() = 0;
    virtual ~Object() = default;

    bool hasProperty(int key) const;
    boost::shared_ptr<Data> getPropertyData(int key) const;
    void setPropertyData(int key, boost::shared_ptr<Data> value);
    void removeProperty(int key);

    boost::shared_ptr<R> region;
    boost::unordered_map<int, boost::shared_ptr<Data>> properties; // guarded by mutex
    mutable boost::mutex mutex;

protected:
    explicit Object(boost::shared_ptr<R> region);

    // The properties one after the other, in the order of the table. Locks the mutex.
    std::string propertiesText() const;
};

} // namespace Type
} // namespace ZR::Corvale
