#pragma once

#include "corvale/data/datatype.h"

#include <boost/shared_ptr.hpp>
#include <opencv2/core/mat.hpp>

namespace ZR::Corvale {

class Data;

/// The matrix of an image, sharing its pixels.
/// Threads: thread-safe. Failure: `std::runtime_error` if the value is no image (a `MatrixImage` is none
/// here).
cv::Mat dataToCvMat(const boost::shared_ptr<Data>& value);

/// A new image of kind `type` that shares the pixels of `matrix` and has the name, the time and the extents
/// of the image in `reference`. Whether the matrix suits the kind is for the caller to know.
/// Threads: thread-safe. Failure: `std::runtime_error` if `reference` or `type` is no image.
boost::shared_ptr<Data> cvMatToData(const cv::Mat& matrix, const DataType& type,
                                    const boost::shared_ptr<Data>& reference);

/// The same without an origin: the default name, no extents, the time of now.
boost::shared_ptr<Data> cvMatToData(const cv::Mat& matrix, const DataType& type);

/// A copy of an image, origin and all, that shares no pixels with it.
/// Threads: thread-safe. Failure: `std::runtime_error` as for `dataToCvMat`.
boost::shared_ptr<Data> cloned(const boost::shared_ptr<Data>& image);

} // namespace ZR::Corvale
