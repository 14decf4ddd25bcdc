#include "corvale/data/datalabelimage.h"

#include "corvale/data/paint.h"

#include <vector>

namespace ZR::Corvale::Type {

namespace {

const std::string LogCategory = rk::log::addCategory("corvale.datalabelimage");

// The greatest label, at most the number of pixels; 0 if there are only labels below.
std::size_t greatestLabel(const cv::Mat& labels)
{
    int greatest = 0;
    for (int y = 0; y < labels.rows; ++y) {
        const int* label = labels.ptr<int>(y);
        for (int x = 0; x < labels.cols; ++x)
            greatest = std::max(greatest, label[x]);
    }
    return std::min(static_cast<std::size_t>(greatest), labels.total());
}

} // namespace

boost::shared_ptr<ColorImage> LabelImage::toColorImage()
{
    if (!isOfItsKind(*this, "toColorImage", LogCategory))
        return {};
    std::vector<PackedColor> ids(greatestLabel(mat) + 1); // by label, the index of its first pixel
    PackedColor index = 0;
    return paint<Colors::LookedUp>(*this, LogCategory, [&ids, &index](const int* label) {
        const PackedColor current = index++;
        if (*label <= 0 || static_cast<std::size_t>(*label) >= ids.size())
            return Black;
        PackedColor& id = ids[*label];
        if (id == 0) // also where a region begins at pixel 0: its second pixel names it anew
            id = current;
        return packed(255, id & 255, id >> 8 & 255);
    });
}

void LabelImage::changeLabel(int from, int to)
{
    if (from == to || !isOfItsKind(*this, "changeLabel", LogCategory))
        return;
    for (int y = 0; y < mat.rows; ++y) {
        int* label = mat.ptr<int>(y);
        for (int x = 0; x < mat.cols; ++x)
            label[x] = label[x] == from ? to : label[x]; // always stored, so that no branch is needed
    }
}

} // namespace ZR::Corvale::Type
