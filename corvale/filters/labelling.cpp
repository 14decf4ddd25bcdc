#include "corvale/filters/labelling.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/spread.h"

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
};

struct Near
{
    int tolerance;

    bool part(ushort a, ushort b) const
    {
        return ((a == 0) != (b == 0)) | ((a != 0) & (std::abs(a - b) > tolerance));
    }
};

constexpr std::size_t KeptBytes = 20'000'000; // more than 1920 x 1080 pixels need

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
    _wordsPerRow = wordsOf(image.cols);
    _words.resize((static_cast<std::size_t>(image.rows) + 1) * _wordsPerRow);
    std::fill_n(_words.begin(), _wordsPerRow, RunWord());
    _runs.resize(_wordsPerRow);
    _touches.resize(_wordsPerRow);
    _labels.resize(std::max<std::size_t>(_labels.size(), 1));
    _stretchCount = 1;
    _equivalences.assign(1, 0);
    _labelCount = 1; // the background
    _aboveFirst = 1;
    if (image.depth() == CV_8U)
        scanRows<uchar>(image, Equal());
    else
        scanRows<ushort>(image, Near{tolerance});
}

// Finds out, by bits, where runs of a row begin and which pixels belong with the ones above them.
template <typename Instructions, typename Component, typename Belonging>
void Labelling::lookAt(const Component* row, const Component* above, const Belonging& belonging,
                       RunWord* words)
{
    const Instructions instructions;
    const auto parts = [&](Component left, Component right) { return belonging.part(left, right); };
    const auto touches = [&](int x) { return (row[x] != 0) & !belonging.part(row[x], above[x]); };
    forEachRunWord(instructions, row, _size.width, parts, [&](int first, const RunWord& word, BitWord) {
        const int w = first / WordBits;
        words[w] = word;
        _runs[w] = word.begins;
        _touches[w] =
            word.on == 0 ? 0 : bitsOf(instructions, first, std::min(WordBits, _size.width - first), touches);
    });
}

// Goes along a row from one pixel to the next where something happens: a run begins, or one meets a stretch
// above. In between nothing changes.
class Labelling::RowScan
{
public:
    RowScan(Labelling& labelling, int y)
        : _labelling(labelling),
          _wordsAbove(labelling.rowAbove(y)),
          _words(labelling.rowAt(y)),
          _runs(labelling._runs.data()),
          _touches(labelling._touches.data()),
          _labels(labelling._labels.data()),
          _equivalences(labelling._equivalences.data()),
          _stretchCount(labelling._stretchCount),
          _labelCount(labelling._labelCount)
    {
    }

    void run()
    {
        const int* labelsAbove = _labels + _labelling._aboveFirst - 1; // of the last stretch in front
        BitWord touching = 0; // whether the last pixel in front belongs with the one above it
        for (std::size_t w = 0; w < _labelling._wordsPerRow; ++w) {
            const BitWord touches = _touches[w];
            const BitWord runs = _runs[w];
            const BitWord beginsAbove = _wordsAbove[w].begins;
            // where the run goes on and comes to a stretch above: from beside one, or from another
            const BitWord met = touches & ~runs & (~(touches << 1 | touching) | beginsAbove);
            for (BitWord events = runs | met; events != 0; events &= events - 1) {
                const BitWord upToEvent = events ^ (events - 1);
                const BitWord event = events & upToEvent;
                const int labelAbove = labelsAbove[countBits(beginsAbove & upToEvent)];
                const bool settled = (runs & event) != 0 ? begin((touches & event) != 0, labelAbove)
                                                         : meet(w, event, labelAbove);
                if (!settled)
                    settle(w, event, labelAbove);
            }
            touching = touches >> (WordBits - 1);
            labelsAbove += countBits(beginsAbove);
        }
        _labelling._stretchCount = _stretchCount;
        _labelling._labelCount = _labelCount;
    }

private:
    // These two tell whether the next pixel of the stretch would find the table as this one leaves it, as all
    // that follow would. They go without branches: no processor could predict which way. So an entry
    // is written whether it is to count or not; `makeRoom` sees to the room.

    bool begin(int touching, int labelAbove)
    {
        _equivalences[_labelCount] = _labelCount;
        _label = (labelAbove & -touching) | (_labelCount & (touching - 1)); // for `?:` compilers would branch
        _labelCount += !touching;
        _labels[_stretchCount++] = _label;
        return _equivalences[_label] == _label;
    }

    bool meet(std::size_t w, BitWord event, int labelAbove)
    {
        int& left = _equivalences[_label];
        int& upper = _equivalences[labelAbove];
        const int least = std::min(left, upper);
        left = upper = least; // one of them is that already
        const bool changed = least != _label;
        _label = least;
        _labels[_stretchCount] = least;
        _stretchCount += changed;
        _words[w].begins |= changed ? event : 0;
        return _equivalences[least] == least;
    }

    // Goes on from the pixel to the right, as long as pixels meet the same stretch above, until one leaves
    // the table as it is.
    void settle(std::size_t w, BitWord event, int labelAbove)
    {
        for (bool settled = false; !settled;) {
            event <<= 1;
            if (event == 0 && ++w < _labelling._wordsPerRow)
                event = 1;
            if (event == 0 || (_touches[w] & ~_runs[w] & ~_wordsAbove[w].begins & event) == 0)
                return;
            settled = meet(w, event, labelAbove);
        }
    }

    Labelling& _labelling;
    const RunWord* const _wordsAbove;
    RunWord* const _words;
    const BitWord* const _runs;
    const BitWord* const _touches;
    int* const _labels;
    int* const _equivalences;
    std::size_t _stretchCount;
    int _labelCount;
    int _label = 0; // of the pixel before
};

template <typename Component, typename Belonging>
void Labelling::scanRows(const cv::Mat& image, const Belonging& belonging)
{
    const auto lookAtRow = [](auto instructions, Labelling* labelling, auto... arguments) {
        labelling->lookAt<decltype(instructions), Component>(arguments...);
    };
    const auto scanRow = [](Labelling* labelling, int y) { RowScan(*labelling, y).run(); };
    const std::vector<Component> outside(static_cast<std::size_t>(image.cols), 0);
    const Component* above = outside.data();
    for (int y = 0; y < image.rows; ++y) {
        const Component* row = image.ptr<Component>(y);
        makeRoom();
        const std::size_t first = _stretchCount;
        runForInstructions(lookAtRow, this, row, above, belonging, rowAt(y));
        runVectorised<InstructionSet::Avx2>(scanRow, this, y);
        _aboveFirst = first;
        above = row;
    }
    _equivalences.resize(static_cast<std::size_t>(_labelCount));
}

// For the next row: for as many labels as pixels, and some to spare.
void Labelling::makeRoom()
{
    const auto makeRoom = [this](std::vector<int>& table, std::size_t count) {
        const std::size_t needed = count + static_cast<std::size_t>(_size.width) + SpareValues;
        if (table.size() < needed)
            table.resize(2 * needed);
    };
    makeRoom(_labels, _stretchCount);
    makeRoom(_equivalences, static_cast<std::size_t>(_labelCount));
}

void Labelling::removeSmallClusters(int min, int max)
{
    if (min <= 1 && max >= _size.area())
        return; // none can be
    for (int& entry : _equivalences)
        entry = _equivalences[entry]; // lesser labels have their root already
    std::vector<int> sizes(_equivalences.size());
    runVectorised([](const Labelling* labelling, int* sizes) { labelling->countPixels(sizes); }, this,
                  sizes.data());
    for (int& entry : _equivalences)
        if (sizes[entry] < min || sizes[entry] > max)
            entry = 0;
}

// By root. The background is of no interest.
inline void Labelling::countPixels(int* sizes) const
{
    const int* label = _labels.data();
    for (const RunWord& word : _words) {
        BitWord on = word.on;
        for (BitWord begins = word.begins; begins != 0; begins &= begins - 1) {
            const BitWord before = (begins ^ (begins - 1)) >> 1;
            sizes[_equivalences[*label++]] += countBits(on & before);
            on &= ~before;
        }
        sizes[_equivalences[*label]] += countBits(on);
    }
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
    for (std::size_t stretch = 1; stretch < _stretchCount; ++stretch)
        _labels[stretch] = _equivalences[_labels[stretch]];
    cv::Mat labels = newMatrix(_size, CV_32SC1);
    spreadRuns(rowAt(0), _labels.data(), labels);
    if (_labels.capacity() * sizeof(int) + _words.capacity() * sizeof(RunWord) > KeptBytes)
        *this = Labelling();
    return labels;
}

} // namespace ZR::Corvale::Filters
