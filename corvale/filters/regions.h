#pragma once

#include "corvale/data/pixelpool.h"
#include "corvale/filters/labeltable.h"
#include "corvale/filters/runs.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

// What the filters share that find something out about each region of an image of labels. That is a class
// whose default is a region without pixels and to which runs of pixels are added, row by row:
//
//     void addRun(int y, int begin, int end);

/// Calls `visit(label, y, begin, end)` for each run of one label, background too, row by row.
template <typename Visitor>
void forEachLabelRun(const cv::Mat& labels, const Visitor& visit)
{
    const auto parts = [](int left, int right) { return left != right; };
    std::vector<int> begins;
    for (int y = 0; y < labels.rows; ++y) {
        const int* row = labels.ptr<int>(y);
        const int runs = findRuns(row, labels.cols, parts, begins);
        for (int i = 0; i < runs; ++i)
            visit(row[begins[i]], y, begins[i], begins[i + 1]);
    }
}

/// Finds it out.
template <typename Region>
LabelTable<Region> measureRegions(const cv::Mat& labels)
{
    LabelTable<Region> regions(labels);
    forEachLabelRun(labels, [&regions](int label, int y, int begin, int end) {
        if (regions.isRegion(label))
            regions[label].addRun(y, begin, end);
    });
    return regions;
}

/// A copy of the image with those regions that `suits(region)` says.
template <typename Region, typename Suits>
cv::Mat selectRegions(const cv::Mat& labels, const Suits& suits)
{
    struct Run
    {
        int label;
        int length;
        int* pixels;
    };
    std::vector<Run> runs;
    LabelTable<Region> regions(labels);
    cv::Mat result = newMatrix(labels.size(), CV_32SC1);
    forEachLabelRun(labels, [&](int label, int y, int begin, int end) {
        int* row = result.ptr<int>(y);
        if (begin == 0) // the whole row, which was just read
            std::copy_n(labels.ptr<int>(y), labels.cols, row);
        if (regions.isRegion(label)) {
            regions[label].addRun(y, begin, end);
            runs.push_back({label, end - begin, row + begin});
        } else if (label != 0) {
            std::fill(row + begin, row + end, 0);
        }
    });
    for (const Run& run : runs)
        if (!suits(regions[run.label]))
            std::fill_n(run.pixels, run.length, 0);
    return result;
}

} // namespace ZR::Corvale::Filters
