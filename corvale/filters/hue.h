#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Tells how near the hue of each pixel is to a wanted one: 255 where they are the same, 128 where they are
/// opposite. A hue is an angle: red 0, green about 120, blue about -120; grey counts as red.
///
/// | port  | kind           | shape and unit         | when missing |
/// | in    | ColorImage     | rows x columns         | no result    |
/// | color | Integer        | degrees, any           | no result    |
/// | out   | GrayscaleImage | as in, with its origin |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Hue : public FilterPrimitive
{
public:
    Hue();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
