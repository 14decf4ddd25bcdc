#include "corvale/runtime/portlookup.h"

#include "corvale/runtime/port.h"

namespace ZR::Corvale {

boost::shared_ptr<Port> findPort(const std::vector<boost::shared_ptr<Port>>& ports, const std::string& name)
{
    for (const boost::shared_ptr<Port>& port : ports)
        if (port && port->getName() == name)
            return port;
    if (name.empty() && ports.size() == 1)
        return ports.front();
    return boost::shared_ptr<Port>();
}

} // namespace ZR::Corvale
