#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Multiplies two numbers, two images, or a grey image by a number.
///
/// | left                   | right          | out                                                     |
/// | Integer, Float, Double | that of left   | the product; an integer one that does not fit wraps     |
/// | ColorImage             | ColorImage     | left * right / 255 of each component, without origin    |
/// | GrayscaleImage         | Integer        | left * right, cut to 0..255: a BinaryImage, as left     |
/// | BinaryImage            | BinaryImage    | the bits on in both, with the origin of left            |
///
/// No result while left or right is missing.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word if the kinds do not pair, with
/// one error line if two colour images differ in size or a matrix does not suit its kind; `cv::Exception`
/// for two masks of different size, unless one is a single pixel, which then goes with every other.
class Multiply : public FilterPrimitive
{
public:
    Multiply();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
