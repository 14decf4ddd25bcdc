#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/unordered_map.hpp>

#include <map>
#include <string>

namespace ZR::Corvale {

class Data;

namespace Type {

class Object2D;
class Object3D;
class Vector3;

/// A person: an identity, a position, scores and objects by name, and values attached by key.
///
/// Threads: thread-safe; what a shared pointer leads to is outside.
/// Failure: none. What is missing gives null, false or no number, and removing it one warning.
class Human
{
public:
    /// A person with an id of its own (1 for the first of the program), no name and no position.
    Human();

    unsigned long long getId() const;
    /// Nothing keeps a set id from being that of another.
    void setId(unsigned long long id);

    std::string getName() const;
    void setName(const std::string& name);

    /// In metres; null until it is set.
    boost::shared_ptr<Vector3> getPosition() const;
    void setPosition(boost::shared_ptr<Vector3> position);

    bool hasScore(const std::string& name) const;
    /// A quiet NaN if there is no such score.
    float getScore(const std::string& name) const;
    void setScore(const std::string& name, float score);
    void removeScore(const std::string& name);

    bool hasObject2D(const std::string& name) const;
    boost::shared_ptr<Object2D> getObject2D(const std::string& name) const;
    void setObject2D(const std::string& name, boost::shared_ptr<Object2D> object);
    void removeObject2D(const std::string& name);

    bool hasObject3D(const std::string& name) const;
    boost::shared_ptr<Object3D> getObject3D(const std::string& name) const;
    void setObject3D(const std::string& name, boost::shared_ptr<Object3D> object);
    void removeObject3D(const std::string& name);

    bool hasProperty(int key) const;
    boost::shared_ptr<Data> getPropertyData(int key) const;
    void setPropertyData(int key, boost::shared_ptr<Data> value);
    void removeProperty(int key);

private:
    unsigned long long _id;
    std::string _name;
    boost::shared_ptr<Vector3> _position;
    std::map<std::string, float> _scores;
    std::map<std::string, boost::shared_ptr<Object2D>> _objects2D;
    std::map<std::string, boost::shared_ptr<Object3D>> _objects3D;
    boost::unordered_map<int, boost::shared_ptr<Data>> _properties;
    mutable boost::mutex _mutex; // guards all of the above
};

} // namespace Type
} // namespace ZR::Corvale
