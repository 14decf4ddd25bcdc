#include "corvale/parser/literal.h"

#include "corvale/data/data.h"
#include "corvale/parser/parsingtools.h"

#include <boost/make_shared.hpp>

namespace ZR::Corvale {

boost::shared_ptr<Data> literalData(const std::string& text)
{
    if (isBool(text))
        return boost::make_shared<Data>(toBool(text));
    if (isInteger(text))
        return boost::make_shared<Data>(toInteger(text));
    if (isFloat(text))
        return boost::make_shared<Data>(toFloat(text));
    if (isString(text))
        return boost::make_shared<Data>(toString(text));
    return {};
}

} // namespace ZR::Corvale
