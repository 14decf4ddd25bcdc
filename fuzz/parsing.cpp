// The cuts and literals of the language on any text, held against what their comments promise. Short numbers
// have the values that the C library reads.

#include "corvale/parser/literal.h"
#include "corvale/parser/parsingtools.h"

#include <boost/algorithm/string.hpp>

#include <cassert>
#include <cmath>

using namespace ZR::Corvale;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    for (const char* cuts : {"{};", "(),", "[] "})
        for (const auto& pieces : {blockString(cuts[0], cuts[1], text), listString(cuts[2], text)}) {
            assert(boost::join(pieces, "").size() <= text.size() + 1); // an open string takes the NUL along
            for (const std::string& piece : pieces)
                assert(trimString(piece) == piece);
        }
    for (const char* separator : {"->", "=>", "<=", "~>", ":", " "})
        assert(splitString(separator, text).first.find(separator) == std::string::npos);
    assert(boost::join(splitSpace(text), "") == boost::erase_all_copy(text, " "));
    assert(removeComments('#', text).find('#') == std::string::npos);

    const float number = toFloat(text), expected = std::strtof(text.c_str(), nullptr);
    assert(toString(text).size() <= text.size() && !std::isnan(number));
    assert(!isInteger(text) || text.size() > 9 || toInteger(text) == std::atoi(text.c_str()));
    assert(!isFloat(text) || text.size() > 20 || number == expected ||
           std::abs(number - expected) <= 1e-5f * std::abs(expected));
    assert((literalData(text) != nullptr) == (isBool(text) || isFloat(text) || isString(text)));
    return 0;
}
