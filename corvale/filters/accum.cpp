#include "corvale/filters/accum.h"

#include "corvale/data/truncate.h"
#include "corvale/filter/memorymanager.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <cstdint>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.accum");
const Kinds kinds{DataType::ColorImage, DataType::GrayscaleImage, DataType::DepthImage};
const InputGuards guards(category, "Accum",
                         {Guard::count(2).quietly(), Guard::kind(1, {DataType::Float}).quietly(),
                          Guard::kind(0, kinds), Guard::intact(0)});

// Of the 32-bit sum a component keeps the bits from 8 on that it has room for: 8 to 15, or 8 to 23. No higher
// bit of the sum or of a weight reaches down to them, so a `Sum` of 16 or 32 bits is exact for all weights,
// negative ones too.
template <typename Component, typename Sum>
void accumulate(const cv::Mat& in, cv::Mat& average, int a, int b)
{
    const auto weightIn = static_cast<Sum>(a);
    const auto weightAverage = static_cast<Sum>(b);
    forEachComponentRow<const Component, Component>(
        [weightIn, weightAverage](std::size_t components, const Component* in, Component* average) {
            for (std::size_t i = 0; i < components; ++i) {
                const Sum sum = static_cast<Sum>(static_cast<std::uint32_t>(in[i]) * weightIn +
                                                 static_cast<std::uint32_t>(average[i]) * weightAverage);
                average[i] = static_cast<Component>(sum >> 8);
            }
        },
        in, average);
}

// The same for 16 bits and weights that share 256 between them, in halves of 8 bits whose sums fit into 16.
void accumulateShares(const cv::Mat& in, cv::Mat& average, int a, int b)
{
    const auto weightIn = static_cast<ushort>(a);
    const auto weightAverage = static_cast<ushort>(b);
    forEachComponentRow<const ushort, ushort>(
        [weightIn, weightAverage](std::size_t components, const ushort* in, ushort* average) {
            for (std::size_t i = 0; i < components; ++i) {
                const auto high =
                    static_cast<ushort>((in[i] >> 8) * weightIn + (average[i] >> 8) * weightAverage);
                const auto low =
                    static_cast<ushort>((in[i] & 255) * weightIn + (average[i] & 255) * weightAverage);
                average[i] = static_cast<ushort>(high + (low >> 8));
            }
        },
        in, average);
}

} // namespace

Accum::Accum() : FilterPrimitive("Accum")
{
    accept(_addInput("in"), kinds);
    accept(_addInput("factor"), {DataType::Float});
    _addOutput("out");
}

Values Accum::applyFilter(const Values& inputs, const StringHash& processHash, const StringHash& scopeHash,
                          long long)
{
    if (!guards.admit(inputs))
        return {};
    const boost::shared_ptr<Data> average = _memoryManager->getData(processHash, scopeHash);
    if (!average) {
        _memoryManager->setData(processHash, scopeHash, cloned(inputs[0]));
        return one(average);
    }
    if (average->getType() != inputs[0]->getType())
        return one(average);

    const cv::Mat in = dataToCvMat(inputs[0]);
    cv::Mat kept = dataToCvMat(average);
    if (in.size() != kept.size() || in.type() != kept.type())
        return guards.refuse();
    const float factor = number<float>(inputs[1]);
    const int a = truncate<int>(factor * 256.0f);
    const int b = truncate<int>((1.0f - factor) * 256.0f);
    if (in.depth() == CV_16U && a >= 0 && b >= 0)
        accumulateShares(in, kept, a, b);
    else if (in.depth() == CV_16U)
        accumulate<ushort, std::uint32_t>(in, kept, a, b);
    else
        accumulate<uchar, std::uint16_t>(in, kept, a, b);
    return one(average);
}

void Accum::forget(const StringHash& processHash, const StringHash& scopeHash)
{
    if (_memoryManager)
        _memoryManager->setData(processHash, scopeHash, nullptr);
}

} // namespace ZR::Corvale::Filters
