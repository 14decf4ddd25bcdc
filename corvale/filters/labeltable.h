#pragma once

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <vector>

namespace ZR::Corvale::Filters {

/// What is found out about each region of an image, by its label.
///
/// The labels of regions go from 1 to the number of pixels; any other one is background. The table reaches
/// as far as the labels that occur, which is mostly not far.
/// Threads: one thread at a time.
template <typename Entry>
class LabelTable
{
public:
    explicit LabelTable(const cv::Mat& labels) : _pixels(labels.total()) {}

    bool isRegion(int label) const { return label > 0 && static_cast<std::size_t>(label) <= _pixels; }

    /// The entry of a region, at first a default one.
    Entry& operator[](int label)
    {
        const auto index = static_cast<std::size_t>(label);
        if (index >= _entries.size())
            _entries.resize(index + 1);
        return _entries[index];
    }

    /// The entries from label 0 on, which is no region, to the greatest that was asked for.
    const std::vector<Entry>& entries() const { return _entries; }

private:
    const std::size_t _pixels;
    std::vector<Entry> _entries;
};

} // namespace ZR::Corvale::Filters
