#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace ZR::Corvale {

class Data;

/// The interface by which a host or a plug-in adds a filter of its own.
///
/// A user filter describes itself in texts and computes from values to values. Each input is declared
/// as `[optional ]name[[Type Type ...]]`, each output as one word:
///
///     getInputs():  "image[GrayscaleImage]", "optional level[Integer Float]", "anything"
///     getOutputs(): "out"
///
/// Ownership: held by `boost::shared_ptr`, by the caller and by the engine's filter.
/// Threads: `applyFilter` is called on a worker, by several at once unless `hasLocalData` is true: then
/// one call runs at a time. One object serves all processes, so state belongs into the local data.
class UserFilter
{
public:
    UserFilter();
    virtual ~UserFilter();

    /// Read once, when the filter is given to the engine.
    virtual std::string getName() = 0;
    virtual std::string getDescription() = 0;
    virtual std::vector<std::string> getInputs() = 0;
    virtual std::vector<std::string> getOutputs() = 0;

    /// One value per declared input, null where an optional one has none; gives one value per declared
    /// output, null or missing for no value.
    virtual std::vector<boost::shared_ptr<Data>>
    applyFilter(const std::vector<boost::shared_ptr<Data>>& inputs) = 0;

    /// Whether this filter keeps state from one computation to the next.
    virtual bool hasLocalData();

    /// The state of this place in this process, for use inside `applyFilter` alone; null at the first call.
    void setLocalData(boost::shared_ptr<Data> data);
    boost::shared_ptr<Data> getLocalData();

private:
    boost::shared_ptr<Data> _localData;
};

} // namespace ZR::Corvale
