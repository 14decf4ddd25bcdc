#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Grows what is bright: each pixel becomes the greatest one of a square around it.
///
/// | port | kind                     | shape and unit                                      | when missing |
/// | in   | BinaryImage, DepthImage, | rows x columns                                      | no result    |
/// |      | GrayscaleImage           |                                                     |              |
/// | size | Integer                  | side of the square in pixels; an even one counts as | no result    |
/// |      |                          | the next odd one                                    |              |
/// | out  | that of in               | as in, with its origin                              |              |
/// Only what lies inside the image counts. Of distances that is the farthest; no measurement, 0, gives way.
/// Threads: thread-safe, keeps no state. Failure: empty result and one error line; `cv::Exception` if size
/// is below 0.
class Dilation : public FilterPrimitive
{
public:
    Dilation();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
