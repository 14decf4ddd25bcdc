#include "corvale/filters/builtinfilters.h"

#include "corvale/filters/accum.h"
#include "corvale/filters/add.h"
#include "corvale/filters/append.h"
#include "corvale/filters/apply.h"
#include "corvale/filters/boundingbox.h"
#include "corvale/filters/curry.h"
#include "corvale/filters/density.h"
#include "corvale/filters/dilation.h"
#include "corvale/filters/dispatch.h"
#include "corvale/filters/draw.h"
#include "corvale/filters/duplicate.h"
#include "corvale/filters/erosion.h"
#include "corvale/filters/extract.h"
#include "corvale/filters/geodesic.h"
#include "corvale/filters/gravity.h"
#include "corvale/filters/head.h"
#include "corvale/filters/histogram.h"
#include "corvale/filters/hue.h"
#include "corvale/filters/identity.h"
#include "corvale/filters/improvedlabelize.h"
#include "corvale/filters/invert.h"
#include "corvale/filters/labelize.h"
#include "corvale/filters/luminance.h"
#include "corvale/filters/mandatory.h"
#include "corvale/filters/mask.h"
#include "corvale/filters/max.h"
#include "corvale/filters/min.h"
#include "corvale/filters/multiplex.h"
#include "corvale/filters/multiply.h"
#include "corvale/filters/otsu.h"
#include "corvale/filters/print.h"
#include "corvale/filters/ratio.h"
#include "corvale/filters/saturation.h"
#include "corvale/filters/scaledown.h"
#include "corvale/filters/slidingwindow.h"
#include "corvale/filters/snn.h"
#include "corvale/filters/sub.h"
#include "corvale/filters/threshold.h"
#include "corvale/filters/tocolorimage.h"

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
    make<Accum>,
    make<SlidingWindow>,
    make<Add>,
    make<Append>,
    make<Apply>,
    make<BoundingBox>,
    make<Curry>,
    make<Density>,
    make<Dilation>,
    make<Dispatch>,
    make<Draw>,
    make<Duplicate>,
    make<Erosion>,
    make<Extract>,
    make<Geodesic>,
    make<Gravity>,
    make<Head>,
    make<Histogram>,
    make<Hue>,
    make<Identity>,
    make<Invert>,
    make<Labelize>,
    make<ImprovedLabelize>,
    make<Luminance>,
    make<Mask>,
    make<Max>,
    make<Min>,
    make<Multiplex>,
    make<Multiply>,
    make<Otsu>,
    make<Print>,
    make<Ratio>,
    make<Saturation>,
    make<ScaleDown>,
    make<SNN>,
    make<Sub>,
    make<Threshold>,
    make<ToColorImage>,
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
