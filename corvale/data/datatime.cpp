#include "corvale/data/datatime.h"

#include "corvale/data/wrapping.h"

#include "rk/os.h"

namespace ZR::Corvale::Type {

Time Time::now()
{
    timeval present{};
    rk::os::gettimeofday(&present);
    return wrappingSum(wrappingProduct(present.tv_sec, 1'000'000), present.tv_usec);
}

} // namespace ZR::Corvale::Type
