#pragma once

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

// Everything that the kernel calls is compiled into these functions, in their instruction set.
#if defined(__GNUC__) && defined(__x86_64__)
template <typename Kernel, typename... Arguments>
__attribute__((target("avx2"), flatten, noinline)) void runAvx2(const Kernel& kernel, Arguments... arguments)
{
    kernel(arguments...);
}

// The byte permutations of this set take colours apart twice as fast as those before.
template <typename Kernel, typename... Arguments>
__attribute__((target("avx512vbmi"), flatten, noinline)) void runAvx512(const Kernel& kernel,
                                                                        Arguments... arguments)
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

} // namespace ZR::Corvale::Filters
