#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Smooths and keeps edges, by a symmetric nearest neighbour mean. Of two pixels that lie opposite each
/// other about the centre, the mean takes the one closer in value to the centre:
///
///     b . .
///     . c .      a or b, and so for each pair; the upper one, or the left one beside c, if both are
///     . . a      equally close
///
/// | port | kind           | shape and unit                                              | when missing |
/// | in   | GrayscaleImage | rows x columns                                              | no result    |
/// | size | Integer        | side of the square in pixels, from 0; 1 more if it is even  | no result    |
/// | out  | GrayscaleImage | as in, with its origin; where the square sticks out, black  |              |
/// The ports also accept a ColorImage, which gives no result, and promise a BinaryImage: that decides what
/// they can be joined to.
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line, which speaks of Dilation.
class SNN : public FilterPrimitive
{
public:
    SNN();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
