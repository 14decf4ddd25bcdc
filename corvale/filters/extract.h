#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Cuts a region out of a colour image. The corners are rounded and cut to the image, and both included.
///
/// | port   | kind       | shape and unit                                               | when missing |
/// | in     | ColorImage | rows x columns                                               | no result    |
/// | region | Region2    | pixels                                                       | no result    |
/// | out    | ColorImage | a copy with the name and time of in and its part of the view |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind or the region covers no pixel.
class Extract : public FilterPrimitive
{
public:
    Extract();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
