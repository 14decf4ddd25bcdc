#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Smooths in time, by the mean of the last images.
///
///     out = sum of image / size      over the last `size` images, fractions cut off in each term
///
/// So out lies up to size - 1 below the true mean, and what is darker than size gives 0. The sum and the
/// divisor keep the bits of a component: a size above 255, or 65535 for depth, divides by what is left of it.
///
/// | port | kind                                   | shape and unit                   | when missing |
/// | in   | ColorImage, GrayscaleImage, DepthImage | rows x columns, always the same  | no result    |
/// | size | Integer                                | images, from 1, always the same  | no result    |
/// | out  | that of in                             | first in itself, then the mean   |              |
/// A multiple of 256, of 65536 for depth, is no size. The window lives in the `MemoryManager`, one for each
/// place in the graph, and begins full of the first image. While in is of another kind, or size another
/// number than at first, nothing comes out.
/// Threads: thread-safe; a place computes on one thread at a time. Failure: empty result; with one error
/// line for what is no size, for a first image of another kind and for another size of in.
class SlidingWindow : public FilterPrimitive
{
public:
    SlidingWindow();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
    void forget(const StringHash& processHash, const StringHash& scopeHash) override;
};

} // namespace ZR::Corvale::Filters
