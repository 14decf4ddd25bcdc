#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Keeps the pixels of an image that are on in a mask, and makes the others 0.
///
/// | port | kind                                                | shape and unit         | when missing |
/// | mask | BinaryImage                                         | rows x columns         | no result    |
/// | in   | ColorImage, GrayscaleImage, LabelImage, DepthImage, | that of mask           | no result    |
/// |      | BinaryImage, XYZImage                               |                        |              |
/// | out  | that of in                                          | as in, with its origin |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word if in is missing, with one
/// error line if mask or in is no image or its matrix does not suit its kind; `cv::Exception` if the sizes
/// differ.
class Mask : public FilterPrimitive
{
public:
    Mask();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
