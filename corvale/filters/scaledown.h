#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Makes an image smaller: keeps one pixel of each factor x factor.
///
/// | port   | kind                                 | shape and unit                   | when missing |
/// | in     | ColorImage, BinaryImage, DepthImage, | rows x columns                   | no result    |
/// |        | GrayscaleImage, LabelImage           |                                  |              |
/// | factor | Integer                              | below 1: in itself goes out      | no result    |
/// | out    | that of in                           | rows / factor x columns / factor |              |
/// No new values arise, so labels and masks stay exact. The origin is that of in.
/// Threads: thread-safe, keeps no state. Failure: empty result; without a word if factor is no Integer, with
/// one error line for another kind of in or where no pixel would be left.
class ScaleDown : public FilterPrimitive
{
public:
    ScaleDown();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
