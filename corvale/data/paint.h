#pragma once

#include "corvale/data/datacolorimage.h"

#include "rk/log.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

// How pictures are made of pixels that are no colours.
namespace ZR::Corvale::Type {

// A colour in one word, red in its lowest byte, then green, then blue; the highest byte is 0.
using PackedColor = std::uint32_t;

constexpr PackedColor packed(PackedColor red, PackedColor green, PackedColor blue)
{
    return red | green << 8 | blue << 16;
}

constexpr PackedColor Black = packed(0, 0, 0);
constexpr PackedColor DarkGrey = packed(85, 85, 85);
constexpr PackedColor White = packed(255, 255, 255);

// The colour of a distance: from red (`t` = 0) by green to blue (1).
inline PackedColor distanceColor(float t)
{
    const float u = 1.0f - t;
    const auto red = static_cast<int>(255.0f * u * u * u);
    const auto green = static_cast<int>(255.0f * (1.0f - (u * u * u + t * t)));
    const auto blue = static_cast<int>(255.0f * t * t);
    return static_cast<PackedColor>(red | green << 8 | blue << 16);
}

// Whether the matrix has the type of its kind; one error line otherwise.
template <typename T, int C>
bool isOfItsKind(const Image<T, C>& image, const char* operation, const std::string& category)
{
    if (image.mat.dims <= 2 && image.mat.type() == Image<T, C>::MatType)
        return true;
    rk::log::LogStream(rk::log::Error, category, __FILE__, operation, __LINE__)
        << operation << ": the matrix has the type " << image.mat.type() << " and " << image.mat.dims
        << " dimensions instead of the type " << Image<T, C>::MatType << " and 2 dimensions.";
    return false;
}

inline void putColor(unsigned char* pixel, PackedColor color)
{
    // Four bytes, which compile to one store.
    const unsigned char bytes[] = {static_cast<unsigned char>(color), static_cast<unsigned char>(color >> 8),
                                   static_cast<unsigned char>(color >> 16),
                                   static_cast<unsigned char>(color >> 24)};
    std::memcpy(pixel, bytes, sizeof bytes);
}

// Paints each pixel in `colorOf(components)`. The fourth byte that is written of a pixel lies in the next
// one, which is written later; the last pixel is therefore put together elsewhere.
template <int C, typename T, typename ColorOf>
void paintRow(const T* in, unsigned char* out, int width, ColorOf& colorOf)
{
    if (width == 0)
        return;
    constexpr int Step = 4; // compiled to one run of instructions, of which few count pixels
    int x = 0;
    for (; x + Step < width; x += Step)
        for (int i = x; i < x + Step; ++i)
            putColor(out + i * 3, colorOf(in + i * C));
    for (; x < width - 1; ++x)
        putColor(out + x * 3, colorOf(in + x * C));
    unsigned char last[4];
    putColor(last, colorOf(in + (width - 1) * C));
    std::memcpy(out + (width - 1) * 3, last, 3);
}

// The same where colours are computed, not looked up: in a loop of its own, which the compiler vectorises.
template <int C, typename T, typename ColorOf>
void paintRowInBlocks(const T* in, unsigned char* out, int width, ColorOf& colorOf)
{
    constexpr int BlockSize = 256;
    std::array<PackedColor, BlockSize> colors;
    const auto computed = [](const PackedColor* color) { return *color; };
    for (int begin = 0; begin < width; begin += BlockSize) {
        const int size = std::min(BlockSize, width - begin);
        for (int i = 0; i < size; ++i)
            colors[i] = colorOf(in + (begin + i) * C);
        paintRow<1>(colors.data(), out + begin * 3, size, computed);
    }
}

enum class Colors
{
    LookedUp,
    Computed
};

// A picture of the same size, painted pixel by pixel, row by row. Null and one error line if the matrix is
// not of its kind.
template <Colors Source, typename T, int C, typename ColorOf>
boost::shared_ptr<ColorImage> paint(const Image<T, C>& image, const std::string& category, ColorOf colorOf)
{
    if (!isOfItsKind(image, "toColorImage", category))
        return {};
    const cv::Mat& mat = image.mat;
    auto picture =
        boost::make_shared<ColorImage>(static_cast<unsigned>(mat.cols), static_cast<unsigned>(mat.rows));
    for (int y = 0; y < mat.rows; ++y)
        if constexpr (Source == Colors::Computed)
            paintRowInBlocks<C>(mat.ptr<T>(y), picture->mat.ptr(y), mat.cols, colorOf);
        else
            paintRow<C>(mat.ptr<T>(y), picture->mat.ptr(y), mat.cols, colorOf);
    return picture;
}

} // namespace ZR::Corvale::Type
