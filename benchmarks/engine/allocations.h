#pragma once

/// Counts what the calling thread asks of `operator new`.
namespace allocations {

long long count();

} // namespace allocations
