#pragma once

#include <string>
#include <vector>

namespace cli {

// Pictures that belong together: a folder of them, or a pattern of their names. A pattern holds one
// number as in `frame-%04d.png`, or one `*`, in its last part. Never an empty list, but a `Failure`.

/// The pictures in a folder, known by their endings, in byte order of their names.
std::vector<std::string> picturesInFolder(const std::string& folder);

bool isPicturePattern(const std::string& path);

/// The files that a pattern stands for: a number's in the order of the numbers, else in byte order.
std::vector<std::string> picturesOfPattern(const std::string& pattern);

/// The file of one number: `frame-%04d.png` and 7 give `frame-0007.png`.
std::string pictureOfNumber(const std::string& pattern, unsigned long long number);

/// Whether a path ends as the pictures do that can be read and written.
bool hasPictureEnding(const std::string& path);

} // namespace cli
