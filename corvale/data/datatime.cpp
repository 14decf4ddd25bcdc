#include "corvale/data/datatime.h"

#include "rk/os.h"

namespace ZR::Corvale::Type {

Time Time::now()
{
    timeval present{};
    rk::os::gettimeofday(&present);
    return present.tv_sec * 1'000'000LL + present.tv_usec;
}

} // namespace ZR::Corvale::Type
