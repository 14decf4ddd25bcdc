#include "corvale/filters/draw.h"

#include "corvale/data/dataregion2.h"
#include "corvale/data/truncate.h"
#include "corvale/filters/inputguards.h"
#include "corvale/runtime/port.h"
#include "rk/log.h"

#include <algorithm>
#include <cmath>

namespace ZR::Corvale::Filters {

namespace {

const std::string category = rk::log::addCategory("corvale.filter.draw");
const InputGuards guards(category, "Draw",
                         {Guard::count(3).quietly(), Guard::kind(0, {DataType::ColorImage}).quietly(),
                          Guard::present(1).quietly(), Guard::intact(0)});

// Paints on an image, as far as it reaches.
class Brush
{
public:
    Brush(Type::ColorImage& image, std::string word) : _image(image)
    {
        const Type::Color colour = _getColorRGBComponents(word);
        _red = static_cast<uchar>(colour.r());
        _green = static_cast<uchar>(colour.g());
        _blue = static_cast<uchar>(colour.b());
    }

    void paint(int x, int y)
    {
        if (x >= 0 && x < _image.mat.cols && y >= 0 && y < _image.mat.rows)
            put(x, y);
    }

    // From `begin` up to, not including, `end`.
    void paintRow(int begin, int end, int y)
    {
        if (y >= 0 && y < _image.mat.rows)
            for (int x = std::max(begin, 0); x < std::min(end, _image.mat.cols); ++x)
                put(x, y);
    }
    void paintColumn(int x, int begin, int end)
    {
        if (x >= 0 && x < _image.mat.cols)
            for (int y = std::max(begin, 0); y < std::min(end, _image.mat.rows); ++y)
                put(x, y);
    }

private:
    void put(int x, int y)
    {
        uchar* const pixel = _image.mat.ptr(y, x);
        pixel[0] = _red;
        pixel[1] = _green;
        pixel[2] = _blue;
    }

    Type::ColorImage& _image;
    uchar _red, _green, _blue;
};

bool isNumber(const Type::Vector2& point)
{
    return !std::isnan(point.x()) && !std::isnan(point.y());
}

void drawRegion(Type::ColorImage& image, const Type::Region2& region, const std::string& word)
{
    if (!isNumber(region.start) || !isNumber(region.end))
        return;
    const int left = truncate<int>(region.start.x()), right = truncate<int>(region.end.x());
    const int top = truncate<int>(region.start.y()), bottom = truncate<int>(region.end.y());
    Brush brush(image, word.empty() ? "red" : word);
    brush.paintRow(left, right, bottom);
    brush.paintRow(left, right, top);
    brush.paintColumn(left, top, bottom);
    brush.paintColumn(right, top, bottom);
}

// The arms end one short of the last column and row.
void drawPoint(Type::ColorImage& image, const Type::Vector2& point, const std::string& word)
{
    if (!isNumber(point))
        return;
    const int x = truncate<int>(point.x()), y = truncate<int>(point.y());
    Brush brush(image, word.empty() ? "black" : word);
    brush.paintRow(truncate<int>(point.x() - 3), std::min(truncate<int>(point.x() + 4), image.mat.cols - 1),
                   y);
    brush.paintColumn(x, truncate<int>(point.y() - 3),
                      std::min(truncate<int>(point.y() + 4), image.mat.rows - 1));
    Brush(image, "white").paint(x, y);
}

} // namespace

Type::Color _getColorRGBComponents(std::string& word)
{
    if (word == "green")
        return Type::Color(0, 255, 0);
    if (word == "blue")
        return Type::Color(0, 0, 255);
    if (word == "black")
        return Type::Color(0, 0, 0);
    if (word == "white")
        return Type::Color(255, 255, 255);
    return Type::Color(255, 0, 0);
}

Draw::Draw() : FilterPrimitive("Draw")
{
    _addInput("in");
    _addInput("data");
    _addInput("color")->setOptional(true);
    _addOutput("out");
}

Values Draw::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    if (!guards.admit(inputs))
        return {};
    const std::string word = inputs[2] ? std::string(*inputs[2]) : std::string();
    const boost::shared_ptr<Type::ColorImage> image = payload<Type::ColorImage>(inputs[0])->clone();
    if (inputs[1]->getType() == DataType::Array)
        for (const boost::shared_ptr<Data>& element : *payload<Values>(inputs[1])) {
            if (!element)
                continue;
            if (const Type::Region2* region = *element)
                drawRegion(*image, *region, word);
            else if (const Type::Vector2* point = *element)
                drawPoint(*image, *point, word);
        }
    return one(image);
}

} // namespace ZR::Corvale::Filters
