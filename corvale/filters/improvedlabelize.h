#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Finds the connected regions of an image after it has grown, so that near ones join, and keeps those of
/// the wanted size.
///
/// | port           | kind                                    | shape and unit             | when missing |
/// | inputImage     | BinaryImage, DepthImage, GrayscaleImage | rows x columns, 0: off     | no result    |
/// | tolerance      | Integer                                 | as for `Labelize`          | 0            |
/// | kernel         | Integer                                 | the size of `Dilation`     | no result    |
/// | min            | Float                                   | least share of the image   | no result    |
/// | max            | Float                                   | greatest share             | no result    |
/// | labelizedImage | LabelImage                              | as inputImage, with origin |              |
/// | dilatedImage   | that of inputImage                      | as inputImage, with origin |              |
/// The labels are those of the grown image, counted on without gaps; they begin at 2 if the first region was
/// not kept.
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line; for a ColorImage or an
/// XYZImage the grown image alone and the line of `Labelize`. `cv::Exception` if kernel is below 0.
class ImprovedLabelize : public FilterPrimitive
{
public:
    ImprovedLabelize();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
