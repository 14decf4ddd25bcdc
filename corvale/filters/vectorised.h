#pragma once

#include <type_traits>

namespace ZR::Corvale::Filters {

/// The sets of vector instructions that kernels are compiled for.
enum class InstructionSet
{
    Baseline,
    Avx2,
    Avx512
};

/// The widest of these sets that this processor has.
InstructionSet instructionSet();

/// One of these sets as a type, for kernels that have to know.
template <InstructionSet Set>
using Instructions = std::integral_constant<InstructionSet, Set>;

// What the sets consist of. The byte permutations of VBMI take colours apart twice as fast as those before;
// VPOPCNTDQ counts for 16 pixels at once how many runs begin in front of them.
#if defined(__GNUC__) && defined(__x86_64__)
#define CORVALE_AVX2 __attribute__((target("avx2,popcnt")))
#define CORVALE_AVX512 __attribute__((target("avx512vbmi,avx512vpopcntdq,popcnt")))

// Everything that the kernel calls is compiled into these functions, in their instruction set.
template <typename Kernel, typename... Arguments>
CORVALE_AVX2 __attribute__((flatten, noinline)) void runAvx2(const Kernel& kernel, Arguments... arguments)
{
    kernel(arguments...);
}

template <typename Kernel, typename... Arguments>
CORVALE_AVX512 __attribute__((flatten, noinline)) void runAvx512(const Kernel& kernel, Arguments... arguments)
{
    kernel(arguments...);
}
#endif

/// Calls `kernel(arguments...)`, a plain loop that the compiler can vectorise, compiled for the
/// instructions of the processor at hand, up to the widest set that is of use. The kernel computes with
/// integers only or in single rounded steps, so that its result is the same everywhere.
template <InstructionSet Widest = InstructionSet::Avx512, typename Kernel, typename... Arguments>
void runVectorised(const Kernel& kernel, Arguments... arguments)
{
#if defined(__GNUC__) && defined(__x86_64__)
    const InstructionSet set = instructionSet();
    if constexpr (Widest == InstructionSet::Avx512)
        if (set == InstructionSet::Avx512)
            return runAvx512(kernel, arguments...);
    if (set != InstructionSet::Baseline)
        return runAvx2(kernel, arguments...);
#endif
    kernel(arguments...);
}

/// The same for `kernel(Instructions<Set>(), arguments...)`, which passes on to what it calls for which
/// instructions it is compiled.
template <typename Kernel, typename... Arguments>
void runForInstructions(const Kernel& kernel, Arguments... arguments)
{
#if defined(__GNUC__) && defined(__x86_64__)
    const InstructionSet set = instructionSet();
    if (set == InstructionSet::Avx512)
        return runAvx512(kernel, Instructions<InstructionSet::Avx512>(), arguments...);
    if (set == InstructionSet::Avx2)
        return runAvx2(kernel, Instructions<InstructionSet::Avx2>(), arguments...);
#endif
    kernel(Instructions<InstructionSet::Baseline>(), arguments...);
}

} // namespace ZR::Corvale::Filters
