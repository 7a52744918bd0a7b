#pragma once

#include <cstddef>

namespace orvalo::platform {

/// Commits the pages that [start, start + size) touches if they are of MapPages, before the system itself writes there:
/// its own accesses are refused instead of committing them. False where there is no memory left.
bool CommitIfMapped(void* start, std::size_t size) noexcept;

}  // namespace orvalo::platform
