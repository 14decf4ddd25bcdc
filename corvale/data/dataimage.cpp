#include "corvale/data/dataimage.h"

#include "corvale/data/truncate.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace ZR::Corvale::Type {

cv::Mat deepCopy(const cv::Mat& mat)
{
    cv::Mat copy = newMatrix(mat.size(), mat.type());
    if (!mat.empty()) // copyTo would forget the size of an empty one
        mat.copyTo(copy);
    return copy;
}

cv::Mat scaledDown(const cv::Mat& mat, unsigned int factor)
{
    CV_Assert(factor > 0);
    const auto reduced = [factor](int size) {
        return static_cast<int>(static_cast<unsigned>(size) / factor);
    };
    const cv::Size size(reduced(mat.cols), reduced(mat.rows));
    cv::Mat result = newMatrix(size, mat.type());
    cv::resize(mat, result, size, 0.0, 0.0, cv::INTER_NEAREST);
    return result;
}

cv::Range covered(float from, float to, int size)
{
    const int last = truncate<int>(to + 0.5f);
    return {std::max(truncate<int>(from + 0.5f), 0), (last < size ? last : size - 1) + 1};
}

} // namespace ZR::Corvale::Type
