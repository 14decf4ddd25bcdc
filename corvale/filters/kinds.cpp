#include "corvale/filters/kinds.h"

#include "corvale/runtime/port.h"

namespace ZR::Corvale::Filters {

void accept(const boost::shared_ptr<Port>& port, const Kinds& kinds)
{
    for (const DataType kind : kinds)
        port->addType(kind);
}

} // namespace ZR::Corvale::Filters
