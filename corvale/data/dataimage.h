#pragma once

#include "corvale/data/dataregion2.h"
#include "corvale/data/datatime.h"
#include "corvale/data/pixelpool.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <opencv2/core/mat.hpp>

#include <string>

namespace ZR::Corvale::Type {

// The work on matrices that all kinds of images share.
cv::Mat deepCopy(const cv::Mat& mat);
cv::Mat scaledDown(const cv::Mat& mat, unsigned int factor);
// The rows or columns between two coordinates, both included, of `size` that there are.
cv::Range covered(float from, float to, int size);

/// A picture: a matrix of pixels, and where it comes from. `T` is the type of a component of a pixel, `C`
/// the number of components; they stand side by side, and rows `mat.step` bytes apart.
///
/// Ownership: the matrix shares its pixels by reference count, except where it wraps a caller's buffer.
/// Threads: one thread at a time, or several that read. An image that others can see is treated as
/// immutable.
/// Failure: what OpenCV throws (no memory, a size it does not take) passes through.
template <typename T, int C>
class Image
{
public:
    /// The type that the matrix of this kind has. No constructor checks it.
    static constexpr int MatType = CV_MAKETYPE(cv::DataType<T>::depth, C);

    /// Copies `width` x `height` pixels, row after row without gaps.
    Image(const T* pixels, unsigned int width, unsigned int height, const std::string& name = "unknow",
          const Time& timestamp = Time(), float fovX = 0.0f, float fovY = 0.0f)
        : Image(deepCopy(wrapped(const_cast<T*>(pixels), width, height)), name, timestamp, fovX, fovY)
    {
    }

    /// Wraps the caller's pixels, which must outlive the image and all that shares its matrix.
    Image(T* pixels, unsigned int width, unsigned int height, const std::string& name = "unknow",
          const Time& timestamp = Time(), float fovX = 0.0f, float fovY = 0.0f)
        : Image(wrapped(pixels, width, height), name, timestamp, fovX, fovY)
    {
    }

    /// Room for `width` x `height` pixels, which are not initialised.
    Image(unsigned int width, unsigned int height, const std::string& name = "unknow",
          const Time& timestamp = Time(), float fovX = 0.0f, float fovY = 0.0f)
        : Image(newMatrix(cv::Size(static_cast<int>(width), static_cast<int>(height)), MatType), name,
                timestamp, fovX, fovY)
    {
    }

    /// Shares the pixels of `matrix`, whatever its type and size.
    Image(const cv::Mat& matrix, const std::string& name = "unknow", const Time& timestamp = Time(),
          float fovX = 0.0f, float fovY = 0.0f)
        : mat(matrix),
          name(name),
          timestamp(timestamp == Time() ? Time::now() : timestamp),
          fovX(fovX),
          fovY(fovY)
    {
    }

    Image(const Image&) = default;
    Image& operator=(const Image&) = default;
    virtual ~Image() = default;

    /// A copy that shares nothing.
    template <typename Kind>
    boost::shared_ptr<Kind> clone() const
    {
        return boost::make_shared<Kind>(deepCopy(mat), name, timestamp, fovX, fovY);
    }

    /// A copy with `cols / factor` columns and `rows / factor` rows, each the nearest pixel, so that no new
    /// values arise. The view stays the same. Throws `cv::Exception` if no pixel is left or `factor` is 0.
    template <typename Kind>
    boost::shared_ptr<Kind> scaleDown(unsigned int factor) const
    {
        return boost::make_shared<Kind>(scaledDown(mat, factor), name, timestamp, fovX, fovY);
    }

    /// A copy of the pixels between two corners, both included. Coordinates are rounded and cut to the
    /// image; the view shrinks in proportion. Corners that are then out of order by one column or row leave
    /// a 0 x 0 image; what is further out of order throws `cv::Exception`.
    template <typename Kind>
    boost::shared_ptr<Kind> extract(float x1, float y1, float x2, float y2) const
    {
        const cv::Range columns = covered(x1, x2, mat.cols);
        const cv::Range rows = covered(y1, y2, mat.rows);
        const cv::Mat part(mat, rows, columns); // refuses a range that ends before it starts
        return boost::make_shared<Kind>(deepCopy(part), name, timestamp, fovX * columns.size() / mat.cols,
                                        fovY * rows.size() / mat.rows);
    }

    cv::Mat mat;
    std::string name; // free text that nothing decides on
    Time timestamp;   // when it was taken; never zero after construction
    float fovX;       // extent of the view along the width, 0 if unknown
    float fovY;       // along the height

protected:
    // Neither checks bounds.
    const T& component(int x, int y, int index) const { return mat.ptr<T>(y)[x * C + index]; }
    T& component(int x, int y, int index) { return mat.ptr<T>(y)[x * C + index]; }

private:
    static cv::Mat wrapped(T* pixels, unsigned int width, unsigned int height)
    {
        return cv::Mat(static_cast<int>(height), static_cast<int>(width), MatType, pixels);
    }
};

/// What each kind of image has on top: copies and cut-outs that are of its own kind, `Kind`.
template <typename Kind, typename T, int C>
class ImageOf : public Image<T, C>
{
    using Base = Image<T, C>;

public:
    using Base::Base;

    boost::shared_ptr<Kind> clone() const { return Base::template clone<Kind>(); }
    boost::shared_ptr<Kind> scaleDown(unsigned int factor) const
    {
        return Base::template scaleDown<Kind>(factor);
    }
    boost::shared_ptr<Kind> extract(float x1, float y1, float x2, float y2) const
    {
        return Base::template extract<Kind>(x1, y1, x2, y2);
    }
    boost::shared_ptr<Kind> extract(const Region2& region) const
    {
        return extract(region.start.x(), region.start.y(), region.end.x(), region.end.y());
    }
};

} // namespace ZR::Corvale::Type
