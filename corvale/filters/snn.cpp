#include "corvale/filters/snn.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/divisor.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/vectorised.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.snn");
const InputGuards guards(category, "Dilation",
                         {Guard::count(2), Guard::kind(1, {DataType::Integer}),
                          Guard::kind(0, {DataType::GrayscaleImage}), Guard::intact(0),
                          Guard::that([](const Values& inputs) { return number<int>(inputs[1]) >= 0; })});

// The square around a pixel: `reach` pixels to each side in rows that are `step` bytes apart.
struct Square
{
    std::ptrdiff_t reach;
    std::ptrdiff_t step;

    std::int64_t side() const { return 2 * std::int64_t(reach) + 1; }
    std::int64_t pairs() const { return (side() * side() - 1) / 2; } // a multiple of 4
};

// Gives the places of one half of a square, the rest of the centre's row first, relative to the centre.
// The other half mirrors it.
class HalfWalk
{
public:
    explicit HalfWalk(const Square& square) : _square(square) {}

    std::ptrdiff_t next()
    {
        if (++_x > _square.reach) {
            _x = -_square.reach;
            _row += _square.step;
        }
        return _row + _x;
    }

private:
    const Square _square;
    std::ptrdiff_t _x = 0;
    std::ptrdiff_t _row = 0;
};

// Of two opposite pixels the one closer to the centre. It chooses by a mask: around a branch the compiler
// does not vectorise.
uchar closer(const uchar* centre, std::ptrdiff_t place)
{
    const uchar c = *centre, a = centre[place], b = centre[-place];
    const auto distanceA = static_cast<uchar>(c > a ? c - a : a - c);
    const auto distanceB = static_cast<uchar>(c > b ? c - b : b - c);
    const auto mask = static_cast<uchar>(-static_cast<int>(distanceA < distanceB));
    return static_cast<uchar>(b ^ ((a ^ b) & mask));
}

template <unsigned int Terms>
void takeMeansOf(std::size_t pixels, const std::uint16_t* sums, uchar* means)
{
    for (std::size_t i = 0; i < pixels; ++i)
        means[i] = static_cast<uchar>(sums[i] / Terms);
}

// By a constant, division takes half the time: it is one for squares of 3, 5 and 7.
void takeMeans(std::size_t pixels, const std::uint16_t* sums, std::int64_t terms, uchar* means)
{
    switch (terms) {
    case 5:
        return takeMeansOf<5>(pixels, sums, means);
    case 13:
        return takeMeansOf<13>(pixels, sums, means);
    case 25:
        return takeMeansOf<25>(pixels, sums, means);
    }
    const Divisor divisor(static_cast<unsigned int>(terms));
    for (std::size_t i = 0; i < pixels; ++i)
        means[i] = static_cast<uchar>(divisor.quotient(sums[i]));
}

void takeMeans(std::size_t pixels, const std::uint64_t* sums, std::int64_t terms, uchar* means)
{
    for (std::size_t i = 0; i < pixels; ++i)
        means[i] = static_cast<uchar>(sums[i] / static_cast<std::uint64_t>(terms));
}

constexpr std::size_t blockPixels = 128; // their sums fit into the registers, or next to them

// Four pairs at a time, so that the sums are read and written a quarter as often.
template <typename Sum>
void smoothBlock(std::size_t pixels, const Square& square, const uchar* in, uchar* out)
{
    Sum sums[blockPixels];
    for (std::size_t i = 0; i < pixels; ++i)
        sums[i] = in[i];
    HalfWalk walk(square);
    for (std::int64_t left = square.pairs(); left > 0; left -= 4) {
        const std::ptrdiff_t first = walk.next(), second = walk.next();
        const std::ptrdiff_t third = walk.next(), fourth = walk.next();
        for (std::size_t i = 0; i < pixels; ++i)
            sums[i] = static_cast<Sum>(sums[i] + closer(in + i, first) + closer(in + i, second) +
                                       closer(in + i, third) + closer(in + i, fourth));
    }
    takeMeans(pixels, sums, square.pairs() + 1, out);
}

// The loops are fastest over whole blocks; the last one overlaps the one before it.
template <typename Sum>
void smoothRow(std::size_t pixels, const Square& square, const uchar* in, uchar* out)
{
    if (pixels < blockPixels)
        return smoothBlock<Sum>(pixels, square, in, out);
    const std::size_t last = pixels - blockPixels;
    for (std::size_t x = 0; x < last; x += blockPixels)
        smoothBlock<Sum>(blockPixels, square, in + x, out + x);
    smoothBlock<Sum>(blockPixels, square, in + last, out + last);
}

void clearBorder(cv::Mat& result, const cv::Rect& interior)
{
    const auto clear = [&result](int y, int begin, int end) {
        std::fill(result.ptr(y) + begin, result.ptr(y) + end, static_cast<uchar>(0));
    };
    for (int y = 0; y < result.rows; ++y)
        if (y < interior.y || y >= interior.br().y) {
            clear(y, 0, result.cols);
        } else {
            clear(y, 0, interior.x);
            clear(y, interior.br().x, result.cols);
        }
}

template <typename Sum>
void smooth(const cv::Mat& image, const Square& square, cv::Mat interior)
{
    const int reach = static_cast<int>(square.reach);
    const auto kernel = [](std::size_t pixels, Square square, const uchar* in, uchar* out) {
        smoothRow<Sum>(pixels, square, in, out);
    };
    for (int y = 0; y < interior.rows; ++y)
        runVectorised(kernel, static_cast<std::size_t>(interior.cols), square,
                      image.ptr<uchar>(y + reach) + reach, interior.ptr<uchar>(y));
}

} // namespace

SNN::SNN() : FilterPrimitive("SNN")
{
    accept(_addInput("in"), {DataType::GrayscaleImage, DataType::ColorImage});
    accept(_addInput("size"), {DataType::Integer});
    accept(_addOutput("out"), {DataType::BinaryImage});
}

Values SNN::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const cv::Mat image = dataToCvMat(inputs[0]);
    const int reach = number<int>(inputs[1]) / 2; // of this size, and of the next one if it is even
    cv::Mat result = newMatrix(image.size(), CV_8UC1);
    if (image.cols > 2 * reach && image.rows > 2 * reach) {
        const cv::Rect interior(reach, reach, image.cols - 2 * reach, image.rows - 2 * reach);
        const Square square{reach, static_cast<std::ptrdiff_t>(image.step[0])};
        if (square.pairs() < std::numeric_limits<std::uint16_t>::max() / 255)
            smooth<std::uint16_t>(image, square, result(interior));
        else
            smooth<std::uint64_t>(image, square, result(interior));
        clearBorder(result, interior);
    } else {
        result.setTo(0);
    }
    return one(cvMatToData(result, DataType::GrayscaleImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
