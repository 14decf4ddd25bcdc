#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Counts how often each level of each component occurs.
///
/// | port | kind                       | shape and unit                                 | when missing |
/// | in   | ColorImage, GrayscaleImage | rows x columns                                 | no result    |
/// | out  | Histogram                  | pixels; 1 or 3 channels of 256 bins, red first |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Histogram : public FilterPrimitive
{
public:
    Histogram();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
