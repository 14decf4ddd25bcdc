#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Tells which pixels are brighter, or farther, than a level.
///
/// | port | kind           | shape and unit                                            | when missing |
/// | in   | ColorImage,    | rows x columns, 0..255                                    | no result    |
/// |      | DepthImage,    | rows x columns, millimetres                               |              |
/// |      | GrayscaleImage | rows x columns, 0..255                                    |              |
/// | ceil | Integer        | in the unit of in; for a colour the mean of its components | no result   |
/// | out  | BinaryImage    | as in, with its origin; on: strictly above ceil           |              |
/// On is 255, but 1 for a ColorImage. No colour is above a ceil below 0, every other pixel is.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if a matrix does not suit its kind.
class Threshold : public FilterPrimitive
{
public:
    Threshold();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
