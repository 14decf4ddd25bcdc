#include "corvale/parser/parsingtools.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ZR::Corvale {

namespace {

const char whiteSpace[] = "\t\n\r ";

bool isDigit(char c)
{
    return '0' <= c && c <= '9';
}

// The digit's value; 0 for any other byte.
unsigned int digitValue(char c)
{
    return isDigit(c) ? c - '0' : 0;
}

unsigned int hexadecimalValue(char c)
{
    if ('a' <= c && c <= 'f')
        return c - 'a' + 10;
    if ('A' <= c && c <= 'F')
        return c - 'A' + 10;
    return digitValue(c);
}

// The byte that a backslash and `c` stand for.
char escapedByte(char c)
{
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case '0':
        return '\0';
    default:
        return c;
    }
}

bool hasSign(const std::string& text)
{
    return text.size() >= 2 && text[0] == '-';
}

// Where the first byte stands, from `from` on, that is no digit.
std::size_t skipDigits(const std::string& text, std::size_t from)
{
    while (from < text.size() && isDigit(text[from]))
        ++from;
    return from;
}

// Collects the pieces of a text, each a slice of its buffer. A slice may take in the NUL behind the
// text's last byte, and nothing beyond.
class Pieces
{
public:
    explicit Pieces(const std::string& text) : _begin(text.c_str()) {}

    // Ends a piece at the separator `at`; the next one starts behind it.
    void cut(const char* at)
    {
        add(at);
        _begin = at + 1;
    }

    // What is left before `end` is the last piece.
    std::list<std::string> finish(const char* end)
    {
        add(end);
        return std::move(_pieces);
    }

private:
    // Emptiness is looked at before the trim: white space stays as an empty piece.
    void add(const char* end)
    {
        if (_begin < end)
            _pieces.push_back(trimString(std::string(_begin, end)));
    }

    const char* _begin;
    std::list<std::string> _pieces;
};

} // namespace

std::string removeComments(char comment, const std::string& text)
{
    std::string result;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t start = text.find(comment, begin);
        result.append(text, begin, start - begin);
        if (start == std::string::npos)
            break;
        const std::size_t lineBreak = text.find_first_of("\r\n", start + 1);
        begin = lineBreak == std::string::npos ? text.size() : lineBreak + 1;
    }
    return result;
}

const char* skipString(const char* quote)
{
    bool escaped = false;
    for (++quote; *quote != '\0'; ++quote) {
        if (escaped)
            escaped = false;
        else if (*quote == '"')
            break;
        else
            escaped = *quote == '\\';
    }
    return quote;
}

std::string trimString(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(whiteSpace) + 1 - first);
}

// In both scans `at` ends one byte behind the terminating NUL when the last string never closes: then
// the NUL is part of the last piece.

std::list<std::string> blockString(char open, char close, const std::string& text)
{
    Pieces pieces(text);
    std::size_t depth = 0;
    const char* at = text.c_str();
    for (const char* const end = at + text.size(); at < end; ++at) {
        if (*at == '"') {
            at = skipString(at);
        } else if (*at == close && depth > 0) {
            if (--depth == 0)
                pieces.cut(at);
        } else if (*at == open) {
            if (depth++ == 0)
                pieces.cut(at);
        }
    }
    return pieces.finish(at);
}

std::list<std::string> listString(char separator, const std::string& text)
{
    Pieces pieces(text);
    const char* at = text.c_str();
    for (const char* const end = at + text.size(); at < end; ++at) {
        if (*at == '"')
            at = skipString(at);
        else if (*at == separator)
            pieces.cut(at);
    }
    return pieces.finish(at);
}

std::pair<std::string, std::string> splitString(const std::string& separator, const std::string& text)
{
    const std::size_t at = text.find(separator);
    if (at == std::string::npos)
        return {trimString(text), {}};
    return {trimString(text.substr(0, at)), trimString(text.substr(at + separator.size()))};
}

std::vector<std::string> splitSpace(const std::string& text)
{
    std::vector<std::string> words;
    std::size_t end = 0;
    for (;;) {
        const std::size_t begin = text.find_first_not_of(' ', end);
        if (begin == std::string::npos)
            return words;
        end = std::min(text.find(' ', begin), text.size());
        words.push_back(text.substr(begin, end - begin));
    }
}

bool isBool(const std::string& text)
{
    return text == "true" || text == "false";
}

bool isInteger(const std::string& text)
{
    return skipDigits(text, hasSign(text)) == text.size();
}

bool isFloat(const std::string& text)
{
    if (text == "infinity")
        return true;
    const std::size_t point = skipDigits(text, hasSign(text));
    return point == text.size() || (text[point] == '.' && skipDigits(text, point + 1) == text.size());
}

bool isString(const std::string& text)
{
    const std::string trimmed = trimString(text);
    return !trimmed.empty() && trimmed.front() == '"' && trimmed.back() == '"';
}

bool toBool(const std::string& text)
{
    return text == "true";
}

int toInteger(const std::string& text)
{
    std::uint32_t value = 0; // unsigned, so that it wraps
    if (text.size() > 2 && text.compare(0, 2, "0x") == 0) {
        for (const char c : text)
            value = value * 16 + hexadecimalValue(c);
        return static_cast<int>(value);
    }
    for (std::size_t at = hasSign(text); at < text.size(); ++at)
        value = value * 10 + digitValue(text[at]);
    return static_cast<int>(hasSign(text) ? 0 - value : value);
}

float toFloat(const std::string& text)
{
    if (text == "infinity")
        return std::numeric_limits<float>::infinity();

    float value = 0.0f;
    std::size_t at = hasSign(text);
    for (; at < text.size() && text[at] != '.'; ++at)
        if (isDigit(text[at]))
            value = 10.0f * value + static_cast<float>(digitValue(text[at]));

    float scale = 1.0f;
    for (; at < text.size(); ++at)
        if (isDigit(text[at])) {
            scale = 10.0f * scale;
            value = value + static_cast<float>(digitValue(text[at])) / scale;
        }
    return value * (hasSign(text) ? -1.0f : 1.0f);
}

std::string toString(const std::string& text)
{
    const std::string trimmed = trimString(text);
    std::string value;
    bool escaped = false;
    // The byte to end before is found by the length of the text as given: a text with white space
    // around it keeps its closing quote.
    for (std::size_t at = 1; at + 1 < text.size() && at < trimmed.size(); ++at) {
        if (!escaped && trimmed[at] == '\\') {
            escaped = true;
        } else {
            value += escaped ? escapedByte(trimmed[at]) : trimmed[at];
            escaped = false;
        }
    }
    return value;
}

} // namespace ZR::Corvale
