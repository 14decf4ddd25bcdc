#pragma once

namespace ZR::Corvale {

/// Whether less than a quarter of the calling thread's stack is left. Processes that read one another and
/// lambdas that call one another nest as deep as a program wants; they give up here instead of ending the
/// host. Threads: thread-safe. Failure: false where the stack's size is not known.
bool stackIsShort();

} // namespace ZR::Corvale
