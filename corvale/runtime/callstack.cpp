#include "corvale/runtime/callstack.h"

#include <pthread.h>

#include <cstddef>
#include <cstdint>

namespace ZR::Corvale {

namespace {

struct Stack
{
    std::uintptr_t lowest = 0; // it grows down to this address
    std::size_t size = 0;
};

Stack stackOfThisThread()
{
    Stack stack;
#if defined(__GLIBC__)
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        void* lowest = nullptr;
        if (pthread_attr_getstack(&attributes, &lowest, &stack.size) == 0)
            stack.lowest = reinterpret_cast<std::uintptr_t>(lowest);
        pthread_attr_destroy(&attributes);
    }
#endif
    return stack;
}

} // namespace

bool stackIsShort()
{
    static thread_local const Stack stack = stackOfThisThread(); // asking takes microseconds
    const char here = 0;
    // On a stack of its own, as a coroutine has, the difference is beyond the size.
    return reinterpret_cast<std::uintptr_t>(&here) - stack.lowest < stack.size / 4;
}

} // namespace ZR::Corvale
