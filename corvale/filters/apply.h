#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Calls a lambda, on this thread.
///
/// | port  | kind   | shape and unit                     | when missing |
/// | fun   | Lambda |                                    | no result    |
/// | param | Array  | a value for each free input of fun | no result    |
/// | out   | any    | the first output of fun            |              |
/// Threads: thread-safe, keeps no state; but one lambda is for one caller at a time, and it is called as it
/// comes: two nodes that run at once need lambdas of their own, for instance from a `Curry` each.
/// Failure: empty result and one error line; otherwise what the lambda gives.
class Apply : public FilterPrimitive
{
public:
    Apply();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
