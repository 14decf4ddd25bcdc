#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Hands on the first of two values that there is.
///
/// | port   | kind | shape and unit                             | when missing     |
/// | master | any  |                                            | slave goes out   |
/// | slave  | any  |                                            | nothing goes out |
/// | out    | any  | the value of master, or else that of slave |                  |
/// Threads: thread-safe, keeps no state. Failure: none.
class Multiplex : public FilterPrimitive
{
public:
    Multiplex();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
