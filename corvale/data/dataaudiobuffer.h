#pragma once

#include "corvale/data/datatime.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>

namespace ZR::Corvale::Type {

class ColorImage;

/// Samples of sound, 16-bit signed, the channels interleaved.
///
/// Ownership: its own samples, or those of a caller which it wraps.
/// Threads: one thread at a time, or several that read.
class AudioBuffer
{
public:
    /// Room for `size` samples over all channels, which are not initialised.
    AudioBuffer(unsigned int size, unsigned int channels, unsigned int sampleRate, Time timestamp);
    /// Copies the samples.
    AudioBuffer(const short* samples, unsigned int size, unsigned int channels, unsigned int sampleRate,
                Time timestamp);
    /// Wraps the caller's samples, which must outlive the buffer.
    AudioBuffer(short* samples, unsigned int size, unsigned int channels, unsigned int sampleRate,
                Time timestamp);
    ~AudioBuffer();
    AudioBuffer(const AudioBuffer&) = delete;
    AudioBuffer& operator=(const AudioBuffer&) = delete;

    /// The number of samples over all channels.
    unsigned int getSize() const { return _size; }
    unsigned int getChannels() const { return _channels; }
    /// Samples of one channel a second.
    unsigned int getSampleRate() const { return _sampleRate; }
    Time getTimestamp() const { return _timestamp; }
    short* getData() const { return _data; }

    // Bounds are not checked.
    const short& data(int sample, int channel) const { return _data[index(sample, channel)]; }
    short& data(int sample, int channel) { return _data[index(sample, channel)]; }

    /// The waveform in blue on black, 320 x 240, the channels one below the other. All black if there are no
    /// channels or no sample for each of them.
    boost::shared_ptr<ColorImage> toColorImage();

private:
    std::ptrdiff_t index(int sample, int channel) const
    {
        return static_cast<std::ptrdiff_t>(sample) * _channels + channel;
    }

    unsigned int _size;
    unsigned int _channels;
    short* _data;
    bool _ownsData;
    unsigned int _sampleRate;
    Time _timestamp;
};

} // namespace ZR::Corvale::Type
