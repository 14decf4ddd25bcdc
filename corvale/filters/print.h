#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Writes a value to the log, and hands it on.
///
/// | port | kind | shape and unit  | when missing                 |
/// | in   | any  |                 | no result, nothing is logged |
/// | out  | any  | the value of in |                              |
/// Threads: thread-safe, keeps no state. Failure: none.
class Print : public FilterPrimitive
{
public:
    Print();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
