#include "corvale/filters/labelling.h"

#include "corvale/filters/runs.h"
#include "corvale/filters/vectorised.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace ZR::Corvale::Filters {

namespace {

// What tells whether pixels that touch belong together, if one of them is on: if not, they part. A run of a
// row ends where they part.
struct Equal
{
    bool part(uchar a, uchar b) const { return a != b; }
    // Where pixels below a stretch no longer do as the first one: part from it, or belong with it.
    int sameEnd(const uchar*, const uchar*, int, int end) const { return end; }
};

struct Near
{
    int tolerance;

    bool part(ushort a, ushort b) const
    {
        return ((a == 0) != (b == 0)) | ((a != 0) & (std::abs(a - b) > tolerance));
    }
    int sameEnd(const ushort* row, const ushort* above, int begin, int end) const
    {
        const bool first = part(row[begin], above[begin]);
        int x = begin + 1;
        while (x < end && part(row[x], above[x]) == first)
            ++x;
        return x;
    }
};

constexpr std::size_t KeptStretches = 4'000'000; // more than there are in 1920 x 1080 pixels

} // namespace

bool Labelling::canCount(const cv::Mat& image)
{
    return image.total() <= static_cast<std::size_t>(std::numeric_limits<int>::max());
}

Labelling& Labelling::ofThread()
{
    static thread_local Labelling labelling;
    return labelling;
}

void Labelling::scan(const cv::Mat& image, int tolerance)
{
    _size = image.size();
    _stretches.clear();
    _rows.clear();
    _equivalences.assign(1, 0); // the background
    if (image.depth() == CV_8U)
        scanRows<uchar>(image, Equal());
    else
        scanRows<ushort>(image, Near{tolerance});
}

template <typename Component, typename Belonging>
void Labelling::scanRows(const cv::Mat& image, const Belonging& belonging)
{
    const auto part = [belonging](Component left, Component right) { return belonging.part(left, right); };
    const Component* above = nullptr;
    for (int y = 0; y < image.rows; ++y) {
        const Component* row = image.ptr<Component>(y);
        _above = y > 0 ? _rows.back() : 0;
        _rows.push_back(_stretches.size());
        const int runs = findRuns(row, image.cols, part, _runs);
        for (int i = 0; i < runs; ++i)
            if (row[_runs[i]] != 0)
                scanRun(row, above, {_runs[i], _runs[i], 0}, _runs[i + 1], belonging);
        above = row;
    }
    _rows.push_back(_stretches.size());
}

// Labels a run that ends at `end`, by the stretches above: those in front of the last entry of `_rows`.
template <typename Component, typename Belonging>
void Labelling::scanRun(const Component* row, const Component* above, Stretch run, int end,
                        const Belonging& belonging)
{
    const std::size_t aboveEnd = _rows.back();
    while (run.end < end) {
        while (_above < aboveEnd && _stretches[_above].end <= run.end)
            ++_above;
        if (_above == aboveEnd || _stretches[_above].begin >= end) {
            proceedAlone(run, end);
            break;
        }
        const Stretch stretch = _stretches[_above];
        if (stretch.begin > run.end)
            proceedAlone(run, stretch.begin);
        const int same = belonging.sameEnd(row, above, run.end, std::min(stretch.end, end));
        if (belonging.part(row[run.end], above[run.end]))
            proceedAlone(run, same);
        else
            proceedWith(run, stretch.label, same);
    }
    _stretches.push_back(run);
}

// The run goes on to `end` with that label.
inline void Labelling::proceed(Stretch& run, int end, int label)
{
    if (run.label != label) {
        if (run.label != 0)
            _stretches.push_back(run);
        run.begin = run.end;
        run.label = label;
    }
    run.end = end;
}

// The same for pixels that do not belong with those above.
inline void Labelling::proceedAlone(Stretch& run, int end)
{
    if (run.label == 0) {
        run.label = static_cast<int>(_equivalences.size());
        _equivalences.push_back(run.label);
    }
    run.end = end;
}

// The same for pixels that belong with those above, which have one label. As soon as a pixel would find the
// table as it left it, so would all that follow.
inline void Labelling::proceedWith(Stretch& run, int labelAbove, int end)
{
    if (run.label == 0)
        proceed(run, run.end + 1, labelAbove);
    while (run.end < end) {
        int& left = _equivalences[run.label];
        int& upper = _equivalences[labelAbove];
        (left >= upper ? left : upper) = std::min(left, upper);
        const bool settled = _equivalences[upper] == upper;
        proceed(run, settled ? end : run.end + 1, upper);
    }
}

void Labelling::removeSmallClusters(int min, int max)
{
    for (int& entry : _equivalences)
        entry = _equivalences[entry]; // lesser labels have their root already
    std::vector<int> sizes(_equivalences.size());
    for (const Stretch& stretch : _stretches)
        sizes[_equivalences[stretch.label]] += stretch.end - stretch.begin;
    for (int& entry : _equivalences)
        if (sizes[entry] < min || sizes[entry] > max)
            entry = 0;
}

cv::Mat Labelling::unifyLabels()
{
    int regions = 1; // also if that of the first pixel was removed
    for (std::size_t label = 1; label < _equivalences.size(); ++label) {
        int& entry = _equivalences[label];
        if (static_cast<std::size_t>(entry) < label)
            entry = _equivalences[entry];
        else if (entry > regions)
            entry = ++regions;
    }
    cv::Mat labels(_size, CV_32SC1);
    runVectorised([](const Labelling* labelling, cv::Mat* labels) { labelling->write(*labels); }, this,
                  &labels);
    if (_stretches.capacity() > KeptStretches)
        *this = Labelling();
    return labels;
}

// Most stretches are short: they are written in steps that may go beyond their end, from left to right.
inline void Labelling::write(cv::Mat& labels) const
{
    constexpr int Step = 8;
    const int* const end = labels.ptr<int>() + labels.total();
    const auto put = [end](int* from, int* to, int label) {
        if (end - to < Step) {
            std::fill(from, to, label);
            return;
        }
        do {
            std::fill_n(from, Step, label);
            from += Step;
        } while (from < to);
    };
    for (int y = 0; y < labels.rows; ++y) {
        int* const row = labels.ptr<int>(y);
        int* pixel = row;
        for (std::size_t i = _rows[y]; i < _rows[y + 1]; ++i) {
            const Stretch& stretch = _stretches[i];
            put(pixel, row + stretch.begin, 0);
            pixel = row + stretch.end;
            put(row + stretch.begin, pixel, _equivalences[stretch.label]);
        }
        put(pixel, row + labels.cols, 0);
    }
}

} // namespace ZR::Corvale::Filters
