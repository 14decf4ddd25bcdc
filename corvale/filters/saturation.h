#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Tells how far each pixel is from grey: 0 for grey and black, 255 where a colour is missing altogether.
///
/// | port | kind           | shape and unit         | when missing |
/// | in   | ColorImage     | rows x columns         | no result    |
/// | out  | GrayscaleImage | as in, with its origin |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Saturation : public FilterPrimitive
{
public:
    Saturation();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
