#pragma once

#include "corvale/filters/guard.h"

#include <string>
#include <vector>

namespace ZR::Corvale::Filters {

/// What a filter demands of its inputs: a table of guards, asked in their order.
///
/// The first guard that fails decides: a quiet one just leaves the outputs without value, any other one
/// writes the filter's error line too. Each filter keeps its table as a constant.
/// Threads: thread-safe.
class InputGuards
{
public:
    /// `category` is the filter's own; `name` is the word in its error line.
    InputGuards(const std::string& category, const std::string& name, const std::vector<Guard>& guards)
        : _category(category),
          _message(" [Invalid Input] -> " + name + " -> ..."),
          _guards(guards)
    {
    }

    /// Whether all guards hold.
    bool admit(const Values& inputs) const;
    /// Writes the error line and gives the result of a filter that has none.
    Values refuse() const;

private:
    const std::string _category;
    const std::string _message;
    const std::vector<Guard> _guards;
};

} // namespace ZR::Corvale::Filters
