#include "cli/text.h"

namespace cli {

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find_first_of("\r\n"));
}

std::string listed(const std::vector<std::string>& names)
{
    constexpr std::size_t shown = 12;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < shown; ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    if (names.size() > shown)
        text += " and " + std::to_string(names.size() - shown) + " more";
    return text.empty() ? "none" : text;
}

} // namespace cli
