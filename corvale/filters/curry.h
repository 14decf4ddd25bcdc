#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Binds a value to inputs of a copy of a lambda, which itself stays as it is.
///
/// | port  | kind   | shape and unit                                   | when missing |
/// | fun   | Lambda |                                                  | no result    |
/// | param | Array  | the first element is bound, others are not read  | no result    |
/// | out   | Lambda | a new one, independent of fun                    |              |
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line.
class Curry : public FilterPrimitive
{
public:
    Curry();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
