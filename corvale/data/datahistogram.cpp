#include "corvale/data/datahistogram.h"

#include "corvale/data/datacolorimage.h"
#include "corvale/data/truncate.h"

#include "rk/log.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace ZR::Corvale::Type {

namespace {
const std::string LogCategory = rk::log::addCategory("Corvale");
}

Histogram::Histogram(const float* bins, unsigned int size, unsigned int channels)
    : _size(size),
      _channels(channels),
      _data(nullptr),
      _ownsData(true)
{
    if (allocate("Histogram(const dataType*)"))
        std::copy_n(bins, size, _data);
}

Histogram::Histogram(float* bins, unsigned int size, unsigned int channels)
    : _size(size),
      _channels(channels),
      _data(bins),
      _ownsData(false)
{
}

Histogram::Histogram(unsigned int size, unsigned int channels)
    : _size(size),
      _channels(channels),
      _data(nullptr),
      _ownsData(true)
{
    if (allocate("Histogram(...)"))
        clear();
}

Histogram::~Histogram()
{
    if (_ownsData)
        delete[] _data;
}

bool Histogram::allocate(const char* title)
{
    try {
        _data = new float[_size];
        return true;
    } catch (const std::runtime_error& error) {
        rk::log::log(rk::log::Error, LogCategory,
                     std::string("Received exception during histogram creation : ") + error.what(), __FILE__,
                     title, __LINE__);
        return false;
    }
}

template <typename Order>
float Histogram::extreme(std::size_t first, std::size_t step, Order before) const
{
    if (first >= _size)
        return 0.0f;
    float best = _data[first];
    for (std::size_t i = first; i < _size; i += step)
        best = before(_data[i], best) ? _data[i] : best;
    return best;
}

float Histogram::min() const
{
    return extreme(0, 1, std::less<>());
}

float Histogram::max() const
{
    return extreme(0, 1, std::greater<>());
}

// Without channels there is no step: what is then asked for is the one bin.
float Histogram::min(int channel) const
{
    return extreme(static_cast<std::size_t>(channel), _channels == 0 ? _size : _channels, std::less<>());
}

float Histogram::max(int channel) const
{
    return extreme(static_cast<std::size_t>(channel), _channels == 0 ? _size : _channels, std::greater<>());
}

unsigned int Histogram::argmax() const
{
    unsigned int best = 0;
    for (unsigned int i = 1; i < _size; ++i)
        if (_data[i] > _data[best])
            best = i;
    return best;
}

std::vector<unsigned int> Histogram::argmax(unsigned int count) const
{
    count = std::min(count, _size);
    if (count == 0)
        return {};
    if (count == 1)
        return {argmax()};

    std::vector<std::pair<int, float>> bins;
    bins.reserve(_size);
    for (unsigned int i = 0; i < _size; ++i)
        bins.emplace_back(static_cast<int>(i), _data[i]);
    std::partial_sort(bins.begin(), bins.begin() + count, bins.end(), _greaterThan);

    std::vector<unsigned int> indices;
    indices.reserve(count);
    for (unsigned int i = 0; i < count; ++i)
        indices.push_back(static_cast<unsigned int>(bins[i].first));
    return indices;
}

bool Histogram::_greaterThan(std::pair<int, float> a, std::pair<int, float> b)
{
    return a.second > b.second;
}

void Histogram::clear()
{
    std::fill_n(_data, _size, 0.0f);
}

boost::shared_ptr<ColorImage> Histogram::toColorImage() const
{
    constexpr unsigned int Height = 640;
    auto picture = boost::make_shared<ColorImage>(_size, Height);
    picture->mat.setTo(cv::Scalar::all(255));
    if (_channels == 0)
        return picture;

    const float low = min();
    unsigned int scale = 1;
    for (unsigned int range = truncate<unsigned int>(max() - low); range > Height; range /= 2)
        scale *= 2;

    const cv::Vec3b channelColors[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}};
    const cv::Vec3b black(0, 0, 0);
    for (unsigned int i = 0; i < _size; ++i) {
        const cv::Vec3b color = _channels == 3 ? channelColors[i % 3] : black;
        const unsigned int height = truncate<unsigned int>(_data[i] - low) / scale;
        for (unsigned int j = 1; j < height; ++j) // row 640 - 0 would lie below the picture
            *picture->mat.ptr<cv::Vec3b>(static_cast<int>(Height - j), static_cast<int>(i)) = color;
    }
    return picture;
}

} // namespace ZR::Corvale::Type
