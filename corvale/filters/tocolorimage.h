#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Shows a value as a picture, as its `toColorImage` does; a colour image passes as it is. The picture has
/// the time of now and no other origin.
///
/// | port | kind                                  | shape and unit             | when missing |
/// | in   | ColorImage, BinaryImage, LabelImage,  | rows x columns             | no result    |
/// |      | GrayscaleImage, DepthImage, XYZImage, |                            |              |
/// |      | AudioBuffer                           |                            |              |
/// | out  | ColorImage                            | as in; 320 x 240 for sound |              |
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind or there is no payload.
class ToColorImage : public FilterPrimitive
{
public:
    ToColorImage();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
