#include "corvale/filters/xmldepth.h"

#include <algorithm>

namespace ZR::Corvale::Filters {

namespace {

const char whiteSpace[] = " \t\n\r";

// Each of these gives the place behind the markup that begins at `at`; npos if it does not end.

std::size_t behind(const std::string& text, const char* end, std::size_t at)
{
    const std::size_t found = text.find(end, at);
    return found == std::string::npos ? found : found + std::char_traits<char>::length(end);
}

// A document type may hold markup in brackets, which nest.
std::size_t behindDocumentType(const std::string& text, std::size_t at)
{
    std::size_t brackets = 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '>' && brackets == 0)
            return at + 1;
        if (text[at] == '[')
            ++brackets;
        else if (text[at] == ']' && brackets > 0)
            --brackets;
    }
    return std::string::npos;
}

// What is no element: a comment, a piece of text, an instruction, or a declaration.
std::size_t behindOther(const std::string& text, std::size_t at)
{
    const auto begins = [&](const std::string& start) { return text.compare(at, start.size(), start) == 0; };
    if (begins("<!--"))
        return behind(text, "-->", at + 4);
    if (begins("<![CDATA["))
        return behind(text, "]]>", at + 9);
    if (begins("<?"))
        return behind(text, "?>", at + 2);
    const bool isDocumentType = begins("<!DOCTYPE") && text.find_first_of(whiteSpace, at) == at + 9;
    return isDocumentType ? behindDocumentType(text, at + 9) : behind(text, ">", at);
}

// The end of the opening tag that begins at `at`: its '>', or the '/' before it. A name may hold quotes, and
// the value of an attribute anything.
std::size_t tagEnd(const std::string& text, std::size_t at)
{
    at = text.find_first_of(" \t\n\r/>?", at);
    while (at != std::string::npos && text[at] != '/' && text[at] != '>') {
        if (text[at] == '"' || text[at] == '\'')
            at = text.find(text[at], at + 1);
        at = at == std::string::npos ? at : text.find_first_of("\"'/>", at + 1);
    }
    return at;
}

} // namespace

std::size_t xmlDepth(const std::string& text)
{
    std::size_t depth = 0, deepest = 0;
    for (std::size_t at = 0; (at = text.find('<', at)) != std::string::npos;) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        if (next == '!' || next == '?') {
            at = behindOther(text, at);
        } else if (next == '/') {
            depth -= depth > 0;
            ++at;
        } else {
            at = tagEnd(text, at);
            deepest = std::max(deepest, depth + 1);
            depth += at != std::string::npos && text[at] == '>';
        }
        if (at == std::string::npos)
            break;
    }
    return deepest;
}

} // namespace ZR::Corvale::Filters
