#pragma once

#include "corvale/runtime/stringhash.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <optional>
#include <vector>

namespace ZR::Corvale {

class Data;

/// What a node keeps for one scope while it is computed.
///
///     resting --synchronize--> open --request--> Computing --> Done --last release--> resting
///
/// Threads: a scope is active in one thread at a time, and only that thread touches its state. What the
/// table needs, to tell whose a state is, is atomic.
struct ScopeState
{
    enum Progress
    {
        Pending,
        Computing,
        Done
    };

    std::atomic<std::uint64_t> key{0}; // the scope's hash; changes while the state rests
    std::atomic<bool> active{false};   // not to be given to another scope

    std::uint32_t synchronizeCount = 0; // registrations that are not released

    // Of filter nodes alone.
    bool used = false;
    std::uint32_t useCount = 0; // consumers of the filter's outputs that are left
    Progress progress = Pending;
    std::vector<boost::shared_ptr<Data>> results; // when Done: one an output; empty after an abort
    std::vector<boost::shared_ptr<Data>> inputs;  // while Computing
    std::optional<StringHash> innerScope;         // the scope that the filter computes in, once derived
};

} // namespace ZR::Corvale
