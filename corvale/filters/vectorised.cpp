#include "corvale/filters/vectorised.h"

namespace ZR::Corvale::Filters {

namespace {

InstructionSet detect()
{
#if defined(__GNUC__) && defined(__x86_64__)
    if (__builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vpopcntdq"))
        return InstructionSet::Avx512;
    if (__builtin_cpu_supports("avx2"))
        return InstructionSet::Avx2;
#endif
    return InstructionSet::Baseline;
}

} // namespace

InstructionSet instructionSet()
{
    static const InstructionSet detected = detect();
    return detected;
}

} // namespace ZR::Corvale::Filters
