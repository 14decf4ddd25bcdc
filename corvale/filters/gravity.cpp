#include "corvale/filters/gravity.h"

#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/regionextent.h"
#include "corvale/filters/regions.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <cstdint>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.gravity");
const InputGuards guards(category, "Gravity",
                         {Guard::count(1).quietly(), Guard::kind(0, {DataType::LabelImage}).quietly(),
                          Guard::intact(0), countableLabels()});

// Each pixel is added to a float on its own, and rounded. Up to 2^24 there is nothing to round, and the sum
// of a run can be added at once.
class Centre
{
public:
    void addRun(int y, int begin, int end)
    {
        constexpr double Exact = 1 << 24;
        const std::int64_t pixels = end - begin;
        const double sumX = _sumX + static_cast<double>((begin + std::int64_t{end} - 1) * pixels / 2);
        const double sumY = _sumY + static_cast<double>(y * pixels);
        _pixels += pixels;
        if (sumX <= Exact && sumY <= Exact) {
            _sumX = sumX;
            _sumY = sumY;
            return;
        }
        float roundedX = static_cast<float>(_sumX), roundedY = static_cast<float>(_sumY);
        for (int x = begin; x < end; ++x) {
            roundedX += static_cast<float>(x);
            roundedY += static_cast<float>(y);
        }
        _sumX = roundedX;
        _sumY = roundedY;
    }

    bool empty() const { return _pixels == 0; }
    Type::Vector2 mean() const
    {
        const auto pixels = static_cast<float>(_pixels);
        return Type::Vector2(static_cast<float>(_sumX) / pixels, static_cast<float>(_sumY) / pixels);
    }

private:
    double _sumX = 0.0; // what a float holds
    double _sumY = 0.0;
    std::int64_t _pixels = 0;
};

} // namespace

Gravity::Gravity() : FilterPrimitive("Gravity")
{
    accept(_addInput("in"), {DataType::LabelImage});
    accept(_addOutput("out"), {DataType::Array});
}

Values Gravity::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const LabelTable<Centre> centres = measureRegions<Centre>(dataToCvMat(inputs[0]));
    std::vector<Type::Vector2> means;
    for (const Centre& centre : centres.entries())
        if (!centre.empty())
            means.push_back(centre.mean());
    return one(boost::make_shared<Data>(valuesOf(means)));
}

} // namespace ZR::Corvale::Filters
