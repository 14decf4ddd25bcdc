#include "cli/interrupt.h"

#include <csignal>

#include <atomic>

namespace cli::interrupt {

namespace {

std::atomic<int> received{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may not lock");

void remember(int number)
{
    received = number;
}

} // namespace

void watch()
{
    struct sigaction action = {};
    action.sa_handler = remember;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    action.sa_handler = SIG_IGN;
    action.sa_flags = 0;
    sigaction(SIGPIPE, &action, nullptr);
}

int signal()
{
    return received;
}

} // namespace cli::interrupt
