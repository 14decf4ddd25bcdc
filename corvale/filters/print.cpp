#include "corvale/filters/print.h"

#include "corvale/runtime/port.h"
#include "rk/log.h"

namespace ZR::Corvale::Filters {

namespace {

// What a program prints is its own speech, not that of this file.
const std::string category = rk::log::addCategory("Corvale");

} // namespace

Print::Print() : FilterPrimitive("Print")
{
    _addInput("in")->setOptional(true);
    _addOutput("out");
}

Values Print::applyFilter(const Values& inputs, const StringHash&, const StringHash&, long long)
{
    Values printed;
    for (const boost::shared_ptr<Data>& value : inputs) {
        if (!value)
            continue;
        RK_LOG(rk::log::Info, category) << value->toString();
        printed.push_back(value);
    }
    return printed;
}

} // namespace ZR::Corvale::Filters
