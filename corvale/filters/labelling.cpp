#include "corvale/filters/labelling.h"

#include "corvale/data/pixelpool.h"
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
};

struct Near
{
    int tolerance;

    bool part(ushort a, ushort b) const
    {
        return ((a == 0) != (b == 0)) | ((a != 0) & (std::abs(a - b) > tolerance));
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
    _rows.clear();
    _stretches.resize(std::max<std::size_t>(_stretches.size(), 1));
    _stretchCount = 1;
    _equivalences.assign(1, 0);
    _labelCount = 1; // the background
    _aboveFirst = 0;
    _begins.assign(wordsOf(image.cols - 1), 0);
    _aboveBegins = _begins;
    if (image.depth() == CV_8U)
        scanRows<uchar>(image, Equal());
    else
        scanRows<ushort>(image, Near{tolerance});
}

// Goes along a row from one pixel to the next where something happens: a run begins, or one meets a stretch
// above. In between nothing changes.
template <typename Component, typename Belonging>
class Labelling::RowScan
{
public:
    RowScan(Labelling& labelling, const Component* row, const Component* above, const Belonging& belonging)
        : _labelling(labelling),
          _row(row),
          _above(above),
          _belonging(belonging),
          _aboveBegins(labelling._aboveBegins.data()),
          _begins(labelling._begins.data()),
          _stretches(labelling._stretches.data()),
          _equivalences(labelling._equivalences.data()),
          _stretchCount(labelling._stretchCount),
          _labelCount(labelling._labelCount)
    {
    }

    void run()
    {
        std::size_t aboveEnd = _labelling._aboveFirst; // the stretch above in which the pixels so far end
        bool touching = touches(0);
        beginRun(0, touching, _stretches[aboveEnd].label);
        const std::size_t words = _labelling._begins.size();
        for (std::size_t w = 0; w < words; ++w) {
            const int first = static_cast<int>(w) * WordBits + 1;
            const int size = std::min(WordBits, _labelling._size.width - first);
            if (_label == 0 && w % Far == 0 && w + Far < words && staysBackground(first)) {
                for (std::size_t i = 0; i < Far; ++i)
                    aboveEnd += static_cast<std::size_t>(countBits(_aboveBegins[w + i]));
                touching = false;
                w += Far - 1;
                continue;
            }
            const BitWord parting = bitsOf(first, size, [this](int x) { return parts(x); });
            _begins[w] |= parting; // joins may have set some
            BitWord joined = 0;
            if (parting != 0 || _label != 0)
                joined = bitsOf(first, size, [this](int x) { return touches(x); });
            scanWord(first, parting, joined, touching, aboveEnd);
            touching = joined >> (WordBits - 1) != 0;
            aboveEnd += static_cast<std::size_t>(countBits(_aboveBegins[w]));
        }
        _labelling._stretchCount = _stretchCount;
        _labelling._labelCount = _labelCount;
    }

private:
    static constexpr std::size_t Far = 4; // words that are looked over at once

    bool parts(int x) const { return _belonging.part(_row[x - 1], _row[x]); }
    bool touches(int x) const { return (_row[x] != 0) & !_belonging.part(_row[x], _above[x]); }
    bool staysBackground(int first) const // from the pixel to the left on, for `Far` words
    {
        std::uint8_t parting = 0;
        for (int x = first; x < first + static_cast<int>(Far) * WordBits; ++x)
            parting |= parts(x);
        return parting == 0;
    }
    bool meetsSame(int x) const // as the pixel to the left
    {
        return x < _labelling._size.width && touches(x) && !parts(x) && !testBit(_aboveBegins, x - 1);
    }

    void scanWord(int first, BitWord parting, BitWord joined, bool touching, std::size_t aboveEnd)
    {
        const BitWord aboveBegins = _aboveBegins[first / WordBits];
        const BitWord met = joined & (~(joined << 1 | BitWord{touching}) | aboveBegins);
        for (BitWord events = parting | met; events != 0; events &= events - 1) {
            const int bit = lowestBit(events);
            const BitWord upToBit = ~BitWord{0} >> (WordBits - 1 - bit);
            const int labelAbove = _stretches[aboveEnd + countBits(aboveBegins & upToBit)].label;
            if ((parting >> bit & 1) != 0)
                beginRun(first + bit, joined >> bit & 1, labelAbove);
            else
                join(first + bit, labelAbove);
        }
    }

    // Most runs do no more than begin: without a branch.
    void beginRun(int x, bool touching, int labelAbove)
    {
        const bool on = _row[x] != 0;
        _equivalences[_labelCount] = _labelCount;
        _label = touching ? labelAbove : on ? _labelCount : 0;
        _labelCount += on & !touching;
        _stretches[_stretchCount++] = {x, _label};
        if (_equivalences[_label] != _label && meetsSame(x + 1))
            join(x + 1, labelAbove);
    }

    // The run belongs, from `x` on, with pixels above of one label. As soon as a pixel would find the table
    // as it left it, so would all that follow.
    void join(int x, int labelAbove)
    {
        bool settled = false;
        do {
            int& left = _equivalences[_label];
            int& upper = _equivalences[labelAbove];
            (left >= upper ? left : upper) = std::min(left, upper);
            settled = _equivalences[upper] == upper;
            if (_label != upper) {
                _label = upper;
                _stretches[_stretchCount++] = {x, _label};
                setBit(_begins, x - 1);
            }
            ++x;
        } while (!settled && meetsSame(x));
    }

    Labelling& _labelling;
    const Component* const _row;
    const Component* const _above;
    const Belonging _belonging;
    const BitWord* const _aboveBegins;
    BitWord* const _begins;
    Stretch* const _stretches;
    int* const _equivalences;
    std::size_t _stretchCount;
    int _labelCount;
    int _label = 0; // of the pixel before
};

template <typename Component, typename Belonging>
void Labelling::scanRows(const cv::Mat& image, const Belonging& belonging)
{
    const auto scanRow = [](Labelling* labelling, auto... arguments) {
        RowScan<Component, Belonging>(*labelling, arguments...).run();
    };
    const std::vector<Component> outside(static_cast<std::size_t>(image.cols), 0);
    const Component* above = outside.data();
    for (int y = 0; y < image.rows; ++y) {
        const Component* row = image.ptr<Component>(y);
        beginRow();
        runVectorised<InstructionSet::Avx2>(scanRow, this, row, above, belonging);
        _aboveFirst = _rows.back();
        _aboveBegins.swap(_begins);
        above = row;
    }
    _rows.push_back(_stretchCount);
    _equivalences.resize(static_cast<std::size_t>(_labelCount));
}

// Makes room for as many labels as pixels, and one to spare.
void Labelling::beginRow()
{
    const auto makeRoom = [this](auto& table, std::size_t count) {
        const std::size_t needed = count + static_cast<std::size_t>(_size.width) + 1;
        if (table.size() < needed)
            table.resize(2 * needed);
    };
    makeRoom(_stretches, _stretchCount);
    makeRoom(_equivalences, static_cast<std::size_t>(_labelCount));
    _rows.push_back(_stretchCount);
    std::fill(_begins.begin(), _begins.end(), 0);
}

template <typename Visitor>
void Labelling::forEachStretch(int row, const Visitor& visit) const
{
    const Stretch* stretch = _stretches.data() + _rows[row];
    const Stretch* const last = _stretches.data() + _rows[row + 1] - 1;
    for (; stretch != last; ++stretch)
        visit(stretch->begin, stretch[1].begin, stretch->label);
    visit(last->begin, _size.width, last->label);
}

void Labelling::removeSmallClusters(int min, int max)
{
    for (int& entry : _equivalences)
        entry = _equivalences[entry]; // lesser labels have their root already
    std::vector<int> sizes(_equivalences.size());
    for (int y = 0; y < _size.height; ++y)
        forEachStretch(y, [&](int begin, int end, int label) { sizes[_equivalences[label]] += end - begin; });
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
    cv::Mat labels = newMatrix(_size, CV_32SC1);
    runVectorised([](const Labelling* labelling, cv::Mat* labels) { labelling->write(*labels); }, this,
                  &labels);
    if (_stretches.capacity() > KeptStretches)
        *this = Labelling();
    return labels;
}

// Most stretches are short. They are written from left to right, in steps that may go beyond their end, so
// that few need a second step: what it costs is the branch that nobody can predict, not the bytes.
inline void Labelling::write(cv::Mat& labels) const
{
    constexpr int Step = 32;
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
    for (int y = 0; y < labels.rows; ++y)
        forEachStretch(y, [&, row = labels.ptr<int>(y)](int begin, int end, int label) {
            put(row + begin, row + end, _equivalences[label]);
        });
}

} // namespace ZR::Corvale::Filters
