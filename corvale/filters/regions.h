#pragma once

#include "corvale/data/pixelpool.h"
#include "corvale/filters/labeltable.h"
#include "corvale/filters/runs.h"
#include "corvale/filters/spread.h"

#include <vector>

namespace ZR::Corvale::Filters {

// What the filters share that find something out about each region of an image of labels. That is a class
// whose default is a region without pixels and to which runs of pixels are added, row by row:
//
//     void addRun(int y, int begin, int end);

/// Calls `visit(label, y, begin, end)` for each run of one label, but not of background, row by row. The
/// words of all rows go to `words` if that is not null.
template <typename Visitor>
void forEachLabelRun(const cv::Mat& labels, const Visitor& visit, RunWord* words = nullptr)
{
    const std::size_t wordsPerRow = wordsOf(labels.cols);
    std::vector<RunWord> ownWords(words ? 0 : wordsPerRow);
    std::vector<BitWord> ends(wordsPerRow);
    std::vector<Run> runs(static_cast<std::size_t>(labels.cols) + SpareRuns);
    const auto takeApart = [&](auto instructions, const int* row, RunWord* words) {
        const auto parts = [](int left, int right) { return left != right; };
        forEachRunWord(instructions, row, labels.cols, parts,
                       [&](int first, const RunWord& word, BitWord end) {
                           words[first / WordBits] = word;
                           ends[static_cast<std::size_t>(first / WordBits)] = end;
                       });
    };
    const auto notePlaces = [&](const RunWord* words, std::size_t* runCount) {
        std::size_t begun = 0, ended = 0;
        for (std::size_t w = 0; w < wordsPerRow; ++w) {
            const int first = static_cast<int>(w) * WordBits;
            begun += Filters::notePlaces(words[w].begins, first, &Run::begin, runs.data() + begun);
            ended += Filters::notePlaces(ends[w], first, &Run::last, runs.data() + ended);
        }
        *runCount = begun;
    };
    for (int y = 0; y < labels.rows; ++y) {
        const int* row = labels.ptr<int>(y);
        RunWord* const rowWords = words ? words + y * wordsPerRow : ownWords.data();
        std::size_t runCount = 0;
        runForInstructions(takeApart, row, rowWords);
        runVectorised<InstructionSet::Avx2>(notePlaces, rowWords, &runCount);
        for (std::size_t i = 0; i < runCount; ++i)
            visit(row[runs[i].begin], y, runs[i].begin, runs[i].last + 1);
    }
}

/// What is found out about each region of the image.
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
    LabelTable<Region> regions(labels);
    std::vector<int> values{0}; // one for nothing, then the labels of the runs
    std::vector<RunWord> words(static_cast<std::size_t>(labels.rows) * wordsOf(labels.cols));
    const auto add = [&](int label, int y, int begin, int end) {
        const bool isRegion = regions.isRegion(label);
        values.push_back(isRegion ? label : 0);
        if (isRegion)
            regions[label].addRun(y, begin, end);
    };
    forEachLabelRun(labels, add, words.data());
    std::vector<int> kept(std::max<std::size_t>(regions.entries().size(), 1)); // by label, that or 0
    for (std::size_t label = 1; label < kept.size(); ++label)
        kept[label] = suits(regions.entries()[label]) ? static_cast<int>(label) : 0;
    for (int& value : values)
        value = kept[value];
    values.resize(values.size() + SpareValues);
    cv::Mat result = newMatrix(labels.size(), CV_32SC1);
    spreadRuns(words.data(), values.data(), result);
    return result;
}

} // namespace ZR::Corvale::Filters
