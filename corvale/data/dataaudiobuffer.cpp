#include "corvale/data/dataaudiobuffer.h"

#include "corvale/data/datacolorimage.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace ZR::Corvale::Type {

AudioBuffer::AudioBuffer(unsigned int size, unsigned int channels, unsigned int sampleRate, Time timestamp)
    : _size(size),
      _channels(channels),
      _data(new short[size]),
      _ownsData(true),
      _sampleRate(sampleRate),
      _timestamp(timestamp)
{
}

AudioBuffer::AudioBuffer(const short* samples, unsigned int size, unsigned int channels,
                         unsigned int sampleRate, Time timestamp)
    : AudioBuffer(size, channels, sampleRate, timestamp)
{
    std::copy_n(samples, size, _data);
}

AudioBuffer::AudioBuffer(short* samples, unsigned int size, unsigned int channels, unsigned int sampleRate,
                         Time timestamp)
    : _size(size),
      _channels(channels),
      _data(samples),
      _ownsData(false),
      _sampleRate(sampleRate),
      _timestamp(timestamp)
{
}

AudioBuffer::~AudioBuffer()
{
    if (_ownsData)
        delete[] _data;
}

boost::shared_ptr<ColorImage> AudioBuffer::toColorImage()
{
    constexpr int Width = 320;
    constexpr int Height = 240;
    auto picture = boost::make_shared<ColorImage>(Width, Height);
    picture->mat.setTo(cv::Scalar::all(0));
    const unsigned int samplesPerChannel = _channels == 0 ? 0 : _size / _channels;
    if (samplesPerChannel == 0)
        return picture;

    const int bandHeight = static_cast<int>(Height / _channels);
    const float xStep = 320.0f / static_cast<float>(samplesPerChannel);
    const float yScale = static_cast<float>(bandHeight / 2) / 32767.0f;
    for (unsigned int channel = 0; channel < _channels; ++channel) {
        const int center = bandHeight / 2 + static_cast<int>(channel) * bandHeight;
        for (int x = 0; x < Width; ++x) {
            const auto sample = static_cast<std::size_t>(static_cast<float>(x) / xStep);
            const float value = _data[sample * _channels + channel];
            const int offset = static_cast<int>(value * yScale);
            const int top = std::max(std::min(center, center - offset), 0);
            const int bottom = std::min(std::max(center, center - offset), Height - 1);
            for (int y = top; y <= bottom; ++y)
                picture->pixelBlue(x, y) = 255;
        }
    }
    return picture;
}

} // namespace ZR::Corvale::Type
