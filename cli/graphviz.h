#pragma once

#include <string>

namespace cli {

/// The picture of a graph in the DOT language, drawn by graphviz's program `dot`, in a format that it knows
/// ("png", "svg"). Failure: `Failure` if there is no `dot`, or if it refuses the text.
std::string drawnByDot(const std::string& text, const std::string& format);

} // namespace cli
