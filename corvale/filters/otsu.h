#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Parts a grey image in two: 1 where it is above the level that best separates dark from bright, else 0.
///
/// That level has the greatest variance between the classes, as in N. Otsu, "A threshold selection method
/// from gray-level histograms", 1979, and is the lowest of several. It is 0 for an image of one level.
///
/// | port | kind           | shape and unit                  | when missing |
/// | in   | GrayscaleImage | rows x columns                  | no result    |
/// | out  | BinaryImage    | as in, with its origin; 1 is on |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Otsu : public FilterPrimitive
{
public:
    Otsu();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
