#pragma once

#include <opencv2/core/mat.hpp>

namespace ZR::Corvale {

/// A new matrix, not initialised, for the pixels of an image or for scratch.
///
/// A large block goes back to a pool when its last matrix does, and serves again. Otherwise the C library
/// would give it back to the kernel, and a page that comes fresh from there costs 15 to 27 times the copy of
/// its bytes. The pool keeps up to 256 MiB.
/// Ownership: as for every matrix, by reference count; it may be released at any time, by any thread.
/// Threads: thread-safe.
/// Failure: `cv::Exception` if there is no memory.
cv::Mat newMatrix(const cv::Size& size, int type);

} // namespace ZR::Corvale
