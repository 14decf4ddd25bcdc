#include "corvale/filters/geodesic.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/vectorised.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>
#include <limits>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.geodesic");
const InputGuards guards(category, "Geodesic",
                         {Guard::kind(0, {DataType::LabelImage}).quietly(), Guard::intact(0)});

// Waves that start from all regions at once, and go left, right, up and down in this order, give a pixel to
// the nearest pixel of a region; of several, to the first in the order of rows: what goes first in one step
// goes first in the next. No region stands in the way of another, as it would be nearer itself.
//
// So one walk along each row, one down and one up the columns find the label. Walking down, what comes from
// above is preferred to what is in the row; walking up, what comes from below is not.
template <typename Distance>
class Waves
{
public:
    explicit Waves(const cv::Mat& image)
        : _image(image),
          _pixels(static_cast<std::size_t>(image.cols)),
          _distances(newMatrix(image.size(), cv::DataType<Distance>::type))
    {
    }

    void write(cv::Mat& labels)
    {
        for (int y = 0; y < labels.rows; ++y) {
            int* label = labels.ptr<int>(y);
            Distance* distance = distances(y);
            walkAlong(_image.ptr<int>(y), label, distance);
            if (y > 0)
                walkTo<true>(labels.ptr<int>(y - 1), distances(y - 1), label, distance);
        }
        for (int y = labels.rows - 2; y >= 0; --y)
            walkTo<false>(labels.ptr<int>(y + 1), distances(y + 1), labels.ptr<int>(y), distances(y));
    }

private:
    // More than any distance in the image.
    static constexpr Distance Far = std::numeric_limits<Distance>::max() - 1;

    Distance* distances(int y) { return _distances.template ptr<Distance>(y); }

    void walkAlong(const int* in, int* label, Distance* distance)
    {
        for (std::size_t x = 0; x < _pixels; ++x) {
            label[x] = in[x];
            distance[x] = in[x] != 0 ? 0 : Far;
        }
        for (std::size_t begin = 0, end = 0; end < _pixels; begin = end) {
            while (begin < _pixels && in[begin] != 0)
                ++begin;
            end = begin;
            while (end < _pixels && in[end] == 0)
                ++end;
            fillGap(begin, end, label, distance);
        }
    }

    // From both sides, where there are; the pixel in the middle takes the label to the left.
    void fillGap(std::size_t begin, std::size_t end, int* label, Distance* distance)
    {
        const bool fromLeft = begin > 0;
        const bool fromRight = end < _pixels;
        const std::size_t middle = !fromLeft ? begin : !fromRight ? end : begin + (end - begin + 1) / 2;
        if (fromLeft)
            for (std::size_t x = begin; x < middle; ++x) {
                label[x] = label[begin - 1];
                distance[x] = static_cast<Distance>(x - begin + 1);
            }
        if (fromRight)
            for (std::size_t x = middle; x < end; ++x) {
                label[x] = label[end];
                distance[x] = static_cast<Distance>(end - x);
            }
    }

    template <bool Preferred>
    void walkTo(const int* fromLabel, const Distance* from, int* label, Distance* distance)
    {
        for (std::size_t x = 0; x < _pixels; ++x) {
            const auto there = static_cast<Distance>(std::min<Distance>(from[x], Far - 1) + 1);
            const bool takes = Preferred ? there <= distance[x] : there < distance[x];
            label[x] = takes ? fromLabel[x] : label[x];
            distance[x] = takes ? there : distance[x];
        }
    }

    const cv::Mat& _image;
    const std::size_t _pixels; // in a row
    cv::Mat _distances;
};

template <typename Distance>
void spread(const cv::Mat& image, cv::Mat& labels)
{
    Waves<Distance> waves(image);
    runVectorised([](Waves<Distance>* waves, cv::Mat* labels) { waves->write(*labels); }, &waves, &labels);
}

} // namespace

Geodesic::Geodesic() : FilterPrimitive("Geodesic")
{
    accept(_addInput("in"), {DataType::LabelImage});
    accept(_addOutput("out"), {DataType::LabelImage});
}

Values Geodesic::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    cv::Mat labels = newMatrix(image.size(), CV_32SC1);
    if (image.rows < 32000 && image.cols < 32000)
        spread<ushort>(image, labels);
    else
        spread<int>(image, labels);
    return one(cvMatToData(labels, DataType::LabelImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
