#include "corvale/data/dataduration.h"

#include "rk/os.h"

namespace ZR::Corvale::Type {

void Duration::sleep()
{
    rk::os::msleep(static_cast<unsigned>(getTotalMilliseconds()));
}

} // namespace ZR::Corvale::Type
