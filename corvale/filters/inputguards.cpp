#include "corvale/filters/inputguards.h"

#include "rk/log.h"

namespace ZR::Corvale::Filters {

bool InputGuards::admit(const Values& inputs) const
{
    for (const Guard& guard : _guards) {
        if (guard.holds(inputs))
            continue;
        if (!guard.quiet())
            refuse();
        return false;
    }
    return true;
}

Values InputGuards::refuse() const
{
    // The line is the filter's own, whoever writes it.
    rk::log::log(rk::log::Error, _category, _message, __FILE__, "applyFilter", __LINE__);
    return Values();
}

} // namespace ZR::Corvale::Filters
