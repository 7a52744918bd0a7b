#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

namespace orvalo {

/// A count from a file as one that buffers are asked for by. One that the system's sizes do not hold becomes the
/// greatest of them, for which there never is memory.
constexpr std::size_t CountInMemory(std::uint64_t count) {
    constexpr std::size_t greatest = std::numeric_limits<std::size_t>::max();
    return count < greatest ? static_cast<std::size_t>(count) : greatest;
}

/// A zeroed buffer of `count` elements, or null when the product overflows or memory does not suffice. From about a
/// page on, memory is committed only as it is written, so a count that a file merely claims costs address space.
/// Buffers may be made and released by several threads at once.
std::shared_ptr<unsigned char[]> AllocateZeroed(std::size_t count, std::size_t elementSize) noexcept;

/// As AllocateZeroed, for a buffer that will be filled from its start on: the system may commit it in steps of a few
/// MiB, where that has cost less of late. A PageCommitter is to take care of it.
std::shared_ptr<unsigned char[]> AllocateToFill(std::size_t count, std::size_t elementSize) noexcept;

/// Whether AllocateToFill gives a buffer of that size pages that no other one shares.
bool HasOwnPages(std::size_t size) noexcept;

}  // namespace orvalo
