#include "corvale/filters/regionextent.h"

#include <limits>

namespace ZR::Corvale::Filters {

Guard countableLabels()
{
    return Guard::that([](const Values& inputs) {
        constexpr int Greatest = std::numeric_limits<std::uint16_t>::max();
        const Type::LabelImage* labels = *inputs[0];
        return !labels || (labels->mat.rows <= Greatest && labels->mat.cols <= Greatest);
    });
}

} // namespace ZR::Corvale::Filters
