#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <utility>
#include <vector>

namespace ZR::Corvale::Type {

class ColorImage;

/// A fixed array of bins, the channels interleaved.
///
/// Ownership: its own bins, or those of a caller which it wraps.
/// Threads: one thread at a time, or several that read.
class Histogram
{
public:
    /// Copies the bins.
    Histogram(const float* bins, unsigned int size, unsigned int channels);
    /// Wraps the caller's bins, which must outlive the histogram.
    Histogram(float* bins, unsigned int size, unsigned int channels);
    /// `size` bins over all channels, all 0.
    Histogram(unsigned int size, unsigned int channels);
    ~Histogram();
    Histogram(const Histogram&) = delete;
    Histogram& operator=(const Histogram&) = delete;

    /// The number of bins over all channels.
    unsigned int getSize() const { return _size; }
    unsigned int getChannels() const { return _channels; }
    /// The number of bins of one channel; 0 if there are no channels.
    unsigned int getChannelSize() const { return _channels == 0 ? 0 : _size / _channels; }
    float* getData() const { return _data; }

    // Bounds are not checked.
    const float& data(int bin, int channel) const { return _data[index(bin, channel)]; }
    float& data(int bin, int channel) { return _data[index(bin, channel)]; }

    // Over all bins, or those of one channel; 0 if there is none.
    float min() const;
    float max() const;
    float min(int channel) const;
    float max(int channel) const;

    /// The index, over all channels, of the greatest bin: the first of several; 0 if there is none.
    unsigned int argmax() const;
    /// The indices of the `count` greatest bins, the greatest first, equal ones in any order. Not more than
    /// there are.
    std::vector<unsigned int> argmax(unsigned int count) const;

    void clear();

    /// A bar chart on white, a column for each bin, 640 high: red, green and blue bars side by side for three
    /// channels, black ones otherwise. No bars if there are no channels.
    boost::shared_ptr<ColorImage> toColorImage() const;

    /// The order of `argmax`: whether the value of `a` is above that of `b`.
    static bool _greaterThan(std::pair<int, float> a, std::pair<int, float> b);

private:
    std::ptrdiff_t index(int bin, int channel) const
    {
        return static_cast<std::ptrdiff_t>(bin) * _channels + channel;
    }
    // The bin that `before` puts ahead of all others, of those from `first` on in steps of `step`.
    template <typename Order>
    float extreme(std::size_t first, std::size_t step, Order before) const;
    // False, with null bins and one error line of that title, on a failure that is not lack of memory.
    bool allocate(const char* title);

    unsigned int _size;
    unsigned int _channels;
    float* _data;
    bool _ownsData;
};

} // namespace ZR::Corvale::Type
