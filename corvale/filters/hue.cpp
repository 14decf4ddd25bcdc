#include "corvale/filters/hue.h"

#include "corvale/data/pixelpool.h"
#include "corvale/filters/dataconversion.h"
#include "corvale/filters/inputguards.h"
#include "corvale/filters/rows.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.hue");
const InputGuards guards(category, "Hue",
                         {Guard::count(2).quietly(), Guard::kind(0, {DataType::ColorImage}).quietly(),
                          Guard::kind(1, {DataType::Integer}).quietly(), Guard::intact(0)});

// Angles are kept as the number of degrees above the lowest one that occurs, -179.
constexpr int LowestAngle = -179;
constexpr int Angles = 359;

// The angle depends on two differences of components only, red - blue and green - blue.
constexpr int Differences = 512; // at least as many as there are, -255 to 255

constexpr std::uint32_t angleIndex(int red, int green, int blue)
{
    return static_cast<std::uint32_t>((red - blue + 256) * Differences + green - blue + 256);
}

std::uint16_t computeAngle(int redLessBlue, int greenLessBlue)
{
    const float x = static_cast<float>(2 * redLessBlue - greenLessBlue); // 2 red - green - blue
    const float y = 1.73f * static_cast<float>(greenLessBlue);
    const double degrees = std::atan2(double(y), double(x)) / double(6.29f) * 360.0;
    return static_cast<std::uint16_t>(static_cast<int>(degrees) - LowestAngle);
}

// All angles, by `angleIndex`: few enough to compute them once.
const std::vector<std::uint16_t>& allAngles()
{
    static const std::vector<std::uint16_t> angles = [] {
        std::vector<std::uint16_t> table(Differences * Differences);
        for (int redLessBlue = -255; redLessBlue <= 255; ++redLessBlue)
            for (int greenLessBlue = -255; greenLessBlue <= 255; ++greenLessBlue)
                table[angleIndex(redLessBlue, greenLessBlue, 0)] = computeAngle(redLessBlue, greenLessBlue);
        return table;
    }();
    return angles;
}

// What comes out for each angle: the nearer to `color`, either way around the circle, the more.
std::array<uchar, Angles> nearness(long long color)
{
    std::array<uchar, Angles> levels;
    for (int i = 0; i < Angles; ++i) {
        const int turn = static_cast<int>(((i + LowestAngle - color) % 360 + 360) % 360);
        const int distance = std::min(turn, 360 - turn);
        levels[i] = static_cast<uchar>(255 - distance * 255 / 360);
    }
    return levels;
}

// In blocks, since indices are found with vectors but tables read one by one.
void mapHues(std::size_t pixels, const uchar* colours, uchar* out, const std::array<uchar, Angles>& levels,
             const std::uint16_t* angles)
{
    std::array<std::uint32_t, 256> indices;
    for (std::size_t begin = 0; begin < pixels; begin += indices.size()) {
        const std::size_t size = std::min(indices.size(), pixels - begin);
        const uchar* colour = colours + 3 * begin;
        for (std::size_t i = 0; i < size; ++i)
            indices[i] = angleIndex(colour[3 * i], colour[3 * i + 1], colour[3 * i + 2]);
        for (std::size_t i = 0; i < size; ++i)
            out[begin + i] = levels[angles[indices[i]]];
    }
}

} // namespace

Hue::Hue() : FilterPrimitive("Hue")
{
    accept(_addInput("in"), {DataType::ColorImage});
    accept(_addInput("color"), {DataType::Integer});
    accept(_addOutput("out"), {DataType::GrayscaleImage});
}

Values Hue::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const std::array<uchar, Angles> levels = nearness(number<int>(inputs[1]));
    const cv::Mat image = dataToCvMat(inputs[0]);
    cv::Mat result = newMatrix(image.size(), CV_8UC1);
    forEachPixelRow<const uchar, uchar>(
        [&levels, angles = allAngles().data()](std::size_t pixels, const uchar* colours, uchar* out) {
            mapHues(pixels, colours, out, levels, angles);
        },
        image, result);
    return one(cvMatToData(result, DataType::GrayscaleImage, inputs[0]));
}

} // namespace ZR::Corvale::Filters
