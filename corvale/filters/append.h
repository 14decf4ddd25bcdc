#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Builds an array one element longer, for instance the parameters of a lambda.
///
/// | port  | kind  | shape and unit                              | when missing                |
/// | item  | any   |                                             | no result                   |
/// | array | Array | any length                                  | the array has one element   |
/// | out   | Array | the elements of array, which shares them, then item |                     |
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line.
class Append : public FilterPrimitive
{
public:
    Append();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
