#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Subtracts two numbers; of two images it gives the absolute difference, component by component.
///
/// | port  | kind                                    | shape and unit | when missing |
/// | left  | Integer, Float, Double,                 | rows x columns | no result    |
/// |       | ColorImage, GrayscaleImage, DepthImage  |                |              |
/// | right | that of left                            | that of left   | no result    |
/// | out   | that of left                            | that of left   |              |
/// An integer difference that does not fit wraps. An image comes out without origin, with the time of now.
/// Threads: thread-safe, keeps no state. Failure: empty result without a word if the kinds do not pair, with
/// one error line if sizes differ or a matrix does not suit its kind.
class Sub : public FilterPrimitive
{
public:
    Sub();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
