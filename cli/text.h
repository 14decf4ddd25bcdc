#pragma once

#include <string>
#include <vector>

namespace cli {

/// What stands before the first line break.
std::string firstLine(const std::string& text);

/// Names for a message: `a, b, c`, shortened after a dozen; "none" for no name.
std::string listed(const std::vector<std::string>& names);

} // namespace cli
