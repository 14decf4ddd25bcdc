#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Keeps a running average of the images that come in, in fixed point: a slow picture of what stays.
///
///     average = (in * a + average * b) >> 8      a = factor * 256, b = (1 - factor) * 256, fractions cut off
///
/// | port   | kind                                   | shape and unit                 | when missing |
/// | in     | ColorImage, GrayscaleImage, DepthImage | rows x columns, always the same | no result   |
/// | factor | Float                                  | weight of the newest, 0..1     | no result    |
/// | out    | that of in                             | the average; nothing at first  |              |
/// The average lives in the `MemoryManager`, one for each place in the graph. It is the very value that goes
/// out, so who keeps it sees it change. While in is of another kind than the average, that stays as it is.
/// Threads: thread-safe; a place computes on one thread at a time. Failure: empty result without a word if
/// factor is no Float, with one error line for another kind or size of in.
class Accum : public FilterPrimitive
{
public:
    Accum();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
    void forget(const StringHash& processHash, const StringHash& scopeHash) override;
};

} // namespace ZR::Corvale::Filters
