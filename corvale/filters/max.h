#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Gives the greater of two numbers, or of each component of two images.
///
/// | port  | kind                        | shape and unit | when missing |
/// | left  | Integer, Float, Double,     | rows x columns | no result    |
/// |       | ColorImage, GrayscaleImage  |                |              |
/// | right | that of left                | that of left   | no result    |
/// | out   | that of left                | that of left   |              |
/// Where neither is greater or one is not a number, right goes out. An image comes out without origin, with
/// the time of now.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word if the kinds do not pair, with
/// one error line if sizes differ or a matrix does not suit its kind.
class Max : public FilterPrimitive
{
public:
    Max();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
