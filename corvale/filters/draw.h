#pragma once

#include "corvale/data/datacolor.h"
#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

#include <string>

namespace ZR::Corvale::Filters {

/// The colour of a word: red, green, blue, black or white, with components 0 or 255; red for another word.
Type::Color _getColorRGBComponents(std::string& word);

/// Marks regions and points on a copy of a colour image.
///
/// | port  | kind       | shape and unit                           | when missing                      |
/// | in    | ColorImage | rows x columns                           | no result                         |
/// | data  | Array      | Region2 and Vector2 as elements, pixels  | no result; other kinds: no marks  |
/// | color | String     | a word of `_getColorRGBComponents`       | red for regions, black for points |
/// | out   | ColorImage | as in, with its origin                   |                                   |
/// A region becomes a frame, a point a cross of 7 pixels with a white centre, both as far as they lie inside
/// the image. What has a coordinate that is not a number is left out.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word for other kinds, with one
/// error line if the matrix does not suit its kind.
class Draw : public FilterPrimitive
{
public:
    Draw();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
