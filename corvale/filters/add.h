#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Adds two numbers, or two images component by component, at most 255.
///
/// | port  | kind                                     | shape and unit               | when missing |
/// | left  | Integer, Float, Double,                  | rows x columns               | no result    |
/// |       | ColorImage, GrayscaleImage, BinaryImage  |                              |              |
/// | right | that of left                             | that of left                 | no result    |
/// | out   | that of left                             | that of left, and its origin |              |
/// An integer sum that does not fit wraps.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word if the kinds do not pair, with
/// one error line if a matrix does not suit its kind; `cv::Exception` for images of different size.
class Add : public FilterPrimitive
{
public:
    Add();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
