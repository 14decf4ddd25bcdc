#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Turns a value, or each component of an image, into its opposite.
///
/// | port | kind                                             | shape and unit           | when missing |
/// | in   | Boolean, ColorImage, GrayscaleImage, BinaryImage | rows x columns           | no result    |
/// | out  | that of in                                       | as in, and with its origin |            |
/// A component v becomes 255 - v; a pixel of a mask becomes 0 if it is on, however, and 255 if it is off.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if a matrix does not suit its kind.
class Invert : public FilterPrimitive
{
public:
    Invert();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
