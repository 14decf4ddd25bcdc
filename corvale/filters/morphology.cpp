#include "corvale/filters/morphology.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/vectorised.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <limits>

namespace ZR::Corvale::Filters {

namespace {

// An extremum of two components, and the component that never is one beside another.
template <typename Component>
struct Greatest
{
    static constexpr Component neutral = 0;
    Component operator()(Component a, Component b) const { return a > b ? a : b; }
};

template <typename Component>
struct Least
{
    static constexpr Component neutral = std::numeric_limits<Component>::max();
    Component operator()(Component a, Component b) const { return a < b ? a : b; }
};

// The extremum of the window around each component, in a time that hardly depends on the window's size.
//
// The rows are taken in blocks of the window's height. A window covers the end of one block and the beginning
// of the next, so that it needs one extremum of rows up to the end of a block and one from the beginning
// (van Herk 1992; Gil and Werman 1993). Along a row, the extrema of 1, 2, 4, ... neighbours lead to that of
// the window.
template <typename Component, template <typename> class Extremum>
class WindowExtrema
{
public:
    WindowExtrema(const cv::Mat& image, int size)
        : _image(image),
          _channels(static_cast<std::size_t>(image.channels())),
          _length(static_cast<std::size_t>(image.cols) * _channels),
          _radiusX(static_cast<std::size_t>(std::min(size / 2, image.cols - 1)) * _channels),
          _radiusY(std::min(size / 2, image.rows - 1)),
          _outside(_length, neutral),
          _ends(2 * static_cast<std::size_t>(_radiusY) * _length),
          _beginning(_length),
          _row(_length + 2 * _radiusX, neutral),
          _nextRow(_row),
          _few(_row.size()),
          _many(_row.size())
    {
    }

    void write(cv::Mat& result)
    {
        const int side = 2 * _radiusY + 1;
        for (int first = 0; first < _image.rows; first += side) {
            const Component* end = imageRow(first + _radiusY);
            for (int row = side - 2; row >= 0; --row)
                end = combine(imageRow(first - _radiusY + row), end, _length, endRow(row));
            std::copy_n(end, _length, _nextRow.data() + _radiusX);
            takeNextRow(result.ptr<Component>(first));

            const Component* beginning = _outside.data();
            for (int row = 1; row < std::min(side, _image.rows - first); ++row) {
                beginning = combine(beginning, imageRow(first + _radiusY + row), _length, _beginning.data());
                end = row < side - 1 ? endRow(row) : imageRow(first + _radiusY);
                combine(end, beginning, _length, _nextRow.data() + _radiusX);
                takeNextRow(result.ptr<Component>(first + row));
            }
        }
        alongRow();
    }

private:
    static constexpr Component neutral = Extremum<Component>::neutral;

    const Component* imageRow(int row) const
    {
        return row >= 0 && row < _image.rows ? _image.ptr<Component>(row) : _outside.data();
    }
    Component* endRow(int row) { return _ends.data() + static_cast<std::size_t>(row) * _length; }

    static const Component* combine(const Component* a, const Component* b, std::size_t count, Component* out)
    {
        for (std::size_t i = 0; i < count; ++i)
            out[i] = Extremum<Component>()(a[i], b[i]);
        return out;
    }

    static void combine(const Component* a, const Component* b, const Component* c, std::size_t count,
                        Component* out)
    {
        for (std::size_t i = 0; i < count; ++i)
            out[i] = Extremum<Component>()(Extremum<Component>()(a[i], b[i]), c[i]);
    }

    static void combine(const Component* a, const Component* b, const Component* c, const Component* d,
                        const Component* e, std::size_t count, Component* out)
    {
        const Extremum<Component> extremum;
        for (std::size_t i = 0; i < count; ++i)
            out[i] = extremum(extremum(extremum(a[i], b[i]), extremum(c[i], d[i])), e[i]);
    }

    // Whoever reads, at other offsets, what was just written waits until it has come to the cache. So the
    // extrema along a row are found when the next row has been written.
    void takeNextRow(Component* out)
    {
        if (_out)
            alongRow();
        _row.swap(_nextRow);
        _out = out;
    }

    // From `_row`, which is neutral beyond both ends.
    void alongRow()
    {
        const std::size_t window = 2 * _radiusX + _channels;
        std::size_t reached = _channels;
        const Component* extrema = _row.data();
        for (; 5 * reached < window; reached *= 2) {
            extrema = combine(extrema, extrema + reached, _row.size() - reached, _many.data());
            _few.swap(_many);
        }
        const Component* last = extrema + window - reached;
        if (window <= 3 * reached)
            combine(extrema, std::min(extrema + reached, last), last, _length, _out);
        else
            combine(extrema, extrema + reached, extrema + 2 * reached, std::min(extrema + 3 * reached, last),
                    last, _length, _out);
    }

    const cv::Mat& _image;
    const std::size_t _channels;
    const std::size_t _length;  // of a row, in components
    const std::size_t _radiusX; // in components
    const int _radiusY;
    const std::vector<Component> _outside; // a row above or below the image
    std::vector<Component> _ends;          // extrema from a row of the block to its last row
    std::vector<Component> _beginning;     // the extrema of the first rows of the next block
    std::vector<Component> _row;           // the extrema of a window's rows
    std::vector<Component> _nextRow;
    std::vector<Component> _few, _many;
    Component* _out = nullptr; // where what is found along `_row` goes
};

template <typename Component, template <typename> class Extremum>
cv::Mat windowExtrema(const cv::Mat& image, int size)
{
    cv::Mat result = newMatrix(image.size(), image.type());
    if (!image.empty()) {
        WindowExtrema<Component, Extremum> extrema(image, size);
        runVectorised([](auto* extrema, cv::Mat* result) { extrema->write(*result); }, &extrema, &result);
    }
    return result;
}

} // namespace

Kinds morphologyKinds()
{
    return {DataType::BinaryImage, DataType::GrayscaleImage, DataType::DepthImage};
}

std::vector<Guard> morphologyGuards()
{
    return {Guard::count(2), Guard::kind(1, {DataType::Integer}), Guard::kind(0, morphologyKinds()),
            Guard::intact(0)};
}

cv::Mat dilated(const cv::Mat& image, int size)
{
    CV_Assert(size >= 0);
    if (image.depth() == CV_8U)
        return windowExtrema<uchar, Greatest>(image, size);
    if (image.depth() == CV_16U)
        return windowExtrema<ushort, Greatest>(image, size);
    cv::Mat result;
    const int side = 2 * std::min(size / 2, std::max(image.rows, image.cols)) + 1;
    cv::dilate(image, result, cv::Mat::ones(side, side, CV_8U), cv::Point(-1, -1), 1,
               cv::BORDER_CONSTANT | cv::BORDER_ISOLATED);
    return result;
}

cv::Mat eroded(const cv::Mat& image, int size)
{
    CV_Assert(size >= 0);
    return image.depth() == CV_16U ? windowExtrema<ushort, Least>(image, size)
                                   : windowExtrema<uchar, Least>(image, size);
}

} // namespace ZR::Corvale::Filters
