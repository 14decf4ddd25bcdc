#pragma once

#include "corvale/filter/filterprimitive.h"
#include "corvale/filters/values.h"

namespace ZR::Corvale::Filters {

/// Finds the connected regions of an image and numbers them.
///
/// | port      | kind                                    | shape and unit              | when missing |
/// | in        | BinaryImage, DepthImage, GrayscaleImage | rows x columns, 0: off      | no result    |
/// | tolerance | Integer                                 | millimetres, for DepthImage | 0            |
/// | out       | LabelImage                              | as in, with its origin;     |              |
/// |           |                                         | 1, 2, ...; 0: off           |              |
/// Pixels belong together that touch by a side, are on and have the same value or, as distances, differ by
/// no more than the tolerance. Regions count in the order in which they begin; `Labelling` has the details.
/// Threads: thread-safe, keeps no state. Failure: empty result; without a word if in has no pixels, else with
/// one error line.
class Labelize : public FilterPrimitive
{
public:
    Labelize();

    Values applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                       long long depth) override;
};

} // namespace ZR::Corvale::Filters
