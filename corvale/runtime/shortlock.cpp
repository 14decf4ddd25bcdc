#include "corvale/runtime/shortlock.h"

#include <chrono>
#include <thread>

namespace ZR::Corvale {

void ShortLock::_wait()
{
    constexpr int looks = 200;   // some times as long as a holder takes
    constexpr int patience = 50; // rounds of them
    for (int round = 0;; ++round) {
        for (int i = 0; i < looks; ++i)
            if (!_taken.load(std::memory_order_relaxed) && !_taken.exchange(true, std::memory_order_acquire))
                return;
        if (round < patience)
            std::this_thread::yield();
        else
            std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
}

} // namespace ZR::Corvale
