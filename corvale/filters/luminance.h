#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Turns colour into brightness: 0.26 red, 0.5 green, 0.1 blue. White becomes 218.
///
/// | port | kind           | shape and unit         | when missing |
/// | in   | ColorImage     | rows x columns         | no result    |
/// | out  | GrayscaleImage | as in, with its origin |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Luminance : public FilterPrimitive
{
public:
    Luminance();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
