#pragma once

#include "corvale/filters/runs.h"

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
    // Stretches are pixels side by side that are on and have one label. They end where their run ends or the
    // next stretch of it begins.
    class RowScan;

    RunWord* rowAbove(int y) { return _words.data() + y * _wordsPerRow; }
    RunWord* rowAt(int y) { return rowAbove(y) + _wordsPerRow; }

    template <typename Component, typename Belonging>
    void scanRows(const cv::Mat& image, const Belonging& belonging);
    template <typename Instructions, typename Component, typename Belonging>
    void lookAt(const Component* row, const Component* above, const Belonging& belonging, RunWord* words);
    void makeRoom();
    void countPixels(int* sizes) const;

    cv::Size _size;
    std::size_t _wordsPerRow = 0;
    std::vector<RunWord> _words;    // a row that is off, then those of the image, where stretches begin
    std::vector<int> _labels;       // 0, then those of the stretches in the order of the scan
    std::vector<int> _equivalences; // by label, one that is lesser, or the same at the root of a region
    std::size_t _stretchCount = 0;  // so many of `_labels` count,
    int _labelCount = 0;            // and so many of `_equivalences`
    std::vector<BitWord> _runs;     // in the row at work, where runs begin
    std::vector<BitWord> _touches;  // and which pixels belong with those above them
    std::size_t _aboveFirst = 0;    // the first stretch of the row above the one at work
};

} // namespace ZR::Corvale::Filters
