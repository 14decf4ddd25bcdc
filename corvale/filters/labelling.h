#pragma once

#include "corvale/filters/bits.h"

#include <opencv2/core/mat.hpp>

#include <cstddef>
#include <vector>

namespace ZR::Corvale::Filters {

/// The connected regions of an image, numbered in the order in which they begin.
///
/// Two pixels side by side or one above the other belong together if both are on (not 0) and, in an image
/// of bytes, equal or, in one of distances, no more than a tolerance apart.
///
/// One scan gives each pixel a provisional label: that of the neighbour to the left or above with which it
/// belongs, or a new one. A pixel that belongs with both makes the label of one equivalent to that of the
/// other, and a label forgets what it was equivalent to before. So a winding region may come out as several;
/// regions that do not touch never come out as one.
///
/// An object serves one image after another and keeps the memory of its tables, unless it got large.
/// Threads: one thread at a time.
class Labelling
{
public:
    /// Whether an `int` can tell each pixel.
    static bool canCount(const cv::Mat& image);
    /// The one that serves the calling thread.
    static Labelling& ofThread();

    /// Begins with another image, whose pixels can be counted: a matrix of type `CV_8UC1` or, where the
    /// tolerance counts, `CV_16UC1`.
    void scan(const cv::Mat& image, int tolerance);

    /// Makes regions background that have fewer pixels than `min` or more than `max`.
    void removeSmallClusters(int min, int max);

    /// Numbers the regions from 1, or from 2 if the first was removed, and gives the image of labels, of type
    /// `CV_32SC1`. The last call for an image.
    cv::Mat unifyLabels();

private:
    // Pixels side by side that have one label, up to the next stretch or the end of the row. Background has
    // the label 0.
    struct Stretch
    {
        int begin;
        int label;
    };
    template <typename Component, typename Belonging>
    class RowScan;

    template <typename Component, typename Belonging>
    void scanRows(const cv::Mat& image, const Belonging& belonging);
    void beginRow();
    template <typename Visitor>
    void forEachStretch(int row, const Visitor& visit) const;
    void write(cv::Mat& labels) const;

    cv::Size _size;
    std::vector<Stretch> _stretches; // one for nothing, then those of the image in the order of the scan
    std::vector<std::size_t> _rows;  // the first stretch of each row, and the end of the last
    std::vector<int> _equivalences;  // by label, one that is lesser, or the same at the root of a region
    std::size_t _stretchCount = 0;   // so many of `_stretches` count,
    int _labelCount = 0;             // and so many of `_equivalences`

    // Where stretches begin in the row at work and in the one above, a bit for each pixel but the first.
    std::vector<BitWord> _begins, _aboveBegins;
    std::size_t _aboveFirst = 0; // the first stretch of the row above
};

} // namespace ZR::Corvale::Filters
