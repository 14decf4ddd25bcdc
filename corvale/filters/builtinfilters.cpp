#include "corvale/filters/builtinfilters.h"

#include "corvale/filters/accum.h"
#include "corvale/filters/add.h"
#include "corvale/filters/append.h"
#include "corvale/filters/apply.h"
#include "corvale/filters/curry.h"
#include "corvale/filters/dispatch.h"
#include "corvale/filters/duplicate.h"
#include "corvale/filters/head.h"
#include "corvale/filters/identity.h"
#include "corvale/filters/invert.h"
#include "corvale/filters/luminance.h"
#include "corvale/filters/mandatory.h"
#include "corvale/filters/mask.h"
#include "corvale/filters/max.h"
#include "corvale/filters/min.h"
#include "corvale/filters/multiplex.h"
#include "corvale/filters/multiply.h"
#include "corvale/filters/print.h"
#include "corvale/filters/slidingwindow.h"
#include "corvale/filters/snn.h"
#include "corvale/filters/sub.h"
#include "corvale/filters/threshold.h"

#include <string>

namespace ZR::Corvale::Filters {

namespace {

template <typename Kind>
boost::shared_ptr<Filter> make()
{
    return boost::make_shared<Kind>();
}

// One line a filter. The order is that of registration.
boost::shared_ptr<Filter> (*const makers[])() = {
    make<Accum>,    make<SlidingWindow>, make<Add>,       make<Append>,    make<Apply>,    make<Curry>,
    make<Dispatch>, make<Duplicate>,     make<Head>,      make<Identity>,  make<Invert>,   make<Luminance>,
    make<Mask>,     make<Max>,           make<Min>,       make<Multiplex>, make<Multiply>, make<Print>,
    make<SNN>,      make<Sub>,           make<Threshold>,
};

constexpr int mandatoryFilters = 8; // Mandatory1 to Mandatory8

} // namespace

std::vector<boost::shared_ptr<Filter>> makeBuiltinFilters()
{
    std::vector<boost::shared_ptr<Filter>> filters;
    for (const auto maker : makers)
        filters.push_back(maker());
    for (int count = 1; count <= mandatoryFilters; ++count)
        filters.push_back(boost::make_shared<Mandatory>("Mandatory" + std::to_string(count), count));
    return filters;
}

} // namespace ZR::Corvale::Filters
