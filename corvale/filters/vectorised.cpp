#include "corvale/filters/vectorised.h"

#include <cstdlib>
#include <string>

namespace ZR::Corvale::Filters {

namespace {

// An environment variable can hold it down: for tests, and to see what two machines differ by.
InstructionSet detect()
{
    const char* const variable = std::getenv("CORVALE_INSTRUCTIONS");
    [[maybe_unused]] const std::string most = variable ? variable : "";
#if defined(__GNUC__) && defined(__x86_64__)
    const bool hasAvx512 = __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vpopcntdq");
    if (hasAvx512 && most != "avx2" && most != "baseline")
        return InstructionSet::Avx512;
    if (__builtin_cpu_supports("avx2") && most != "baseline")
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
