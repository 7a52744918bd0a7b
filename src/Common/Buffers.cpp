#include "Common/Buffers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <new>

#include "Common/PageCommitter.h"
#include "Common/Platform.h"

namespace orvalo {

namespace {

using platform::Pages;

// Smaller buffers come from the heap. It may clear what it hands out, and so commit it; a page of that is affordable
// even when a file asks for very many buffers.
constexpr std::size_t mappedFrom = 4096;
// Below this the pages at either end, which the system keeps small, would be most of the buffer.
constexpr std::size_t largePagesFrom = std::size_t{4} << 20U;

// Under the address sanitizer every buffer comes from its heap, which alone knows where buffers end.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool heapOnly = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool heapOnly = true;
#else
constexpr bool heapOnly = false;
#endif
#else
constexpr bool heapOnly = false;
#endif

/// A run of pages that is cut into buffers from its start on and given back as a whole. It begins with this record.
struct alignas(64) Region {
    std::size_t size;
    std::size_t used;
    std::size_t buffers;
    /// Whether further buffers may be cut off.
    bool shared;
    /// The next one that could not be given back.
    Region* next;

    bool HasRoom(std::size_t bytes) const { return size - used >= bytes; }

    unsigned char* Cut(std::size_t bytes) {
        unsigned char* const buffer = reinterpret_cast<unsigned char*>(this) + used;
        const std::size_t aligned = (bytes + alignof(Region) - 1) / alignof(Region) * alignof(Region);
        used += std::min(aligned, size - used);
        ++buffers;
        return buffer;
    }
};

/// The regions of the process.
///
/// Were each buffer a mapping of its own, the system would merge neighbours, and would have to split them again as
/// they are released in another order than they were made, until it has no more mappings to give and refuses to release
/// anything. Of a region only the content is given back buffer by buffer, which splits nothing.
class Regions {
public:
    /// The region in which the buffer lies, or null when memory does not suffice.
    Region* Take(std::size_t size, bool toFill, unsigned char*& buffer) noexcept {
        const std::lock_guard lock(mutex_);
        Region* const region = toFill && HasOwnPages(size) ? Map(size, CheapestPages()) : SharedWithRoom(size);
        if (region != nullptr) buffer = region->Cut(size);
        return region;
    }

    void Release(Region& region, unsigned char* buffer, std::size_t size) noexcept {
        const std::lock_guard lock(mutex_);
        if (--region.buffers > 0) return platform::DiscardPages(buffer, size);
        if (region.shared) shared_ -= region.size;
        if (current_ == &region) current_ = nullptr;
        Unmap(region);
    }

private:
    Region* SharedWithRoom(std::size_t size) noexcept {
        if (current_ != nullptr && current_->HasRoom(size)) return current_;
        // As large as all others together, so that they are few however much is taken.
        constexpr std::size_t smallest = std::size_t{1} << 20U;
        Region* region = Map(std::max({size, shared_, smallest}), Pages::Small);
        if (region == nullptr) region = Map(size, Pages::Small);
        if (region == nullptr) return nullptr;
        region->shared = true;
        shared_ += region->size;
        return current_ = region;
    }

    Region* Map(std::size_t room, Pages pages) noexcept {
        UnmapRefused();
        const std::size_t size = sizeof(Region) + room;
        void* const mapped = platform::MapPages(size, pages);
        return mapped == nullptr ? nullptr : new (mapped) Region{size, sizeof(Region), 0, false, nullptr};
    }

    /// What the system refuses to unmap, as it may when there are too many mappings, is emptied and tried again later.
    void Unmap(Region& region) noexcept {
        UnmapRefused();
        const std::size_t size = region.size;
        if (platform::UnmapPages(&region, size)) return;
        platform::DiscardPages(&region, size);
        refused_ = new (&region) Region{size, size, 0, false, refused_};
    }

    void UnmapRefused() noexcept {
        while (refused_ != nullptr) {
            Region* const next = refused_->next;
            if (!platform::UnmapPages(refused_, refused_->size)) return;
            refused_ = next;
        }
    }

    std::mutex mutex_;
    /// From which buffers are cut, or null.
    Region* current_ = nullptr;
    /// Bytes of all shared regions.
    std::size_t shared_ = 0;
    Region* refused_ = nullptr;
};

#if defined(__MINGW32__)
// Constant by the compiler's optimisation: there a mutex is initialised by a cast.
Regions regions;
#else
constinit Regions regions;
#endif

struct FreeHeap {
    void operator()(unsigned char* buffer) const noexcept { std::free(buffer); }
};

struct ReleaseRegion {
    Region* region;
    std::size_t size;
    void operator()(unsigned char* buffer) const noexcept { regions.Release(*region, buffer, size); }
};

std::shared_ptr<unsigned char[]> Allocate(std::size_t count, std::size_t elementSize, bool toFill) noexcept {
    // Leaves room for the record of a region, and for rounding up to pages.
    constexpr auto largest = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) - 65536;
    if (elementSize != 0 && count > largest / elementSize) return nullptr;
    const std::size_t size = std::max<std::size_t>(count * elementSize, 1);
    try {
        if (heapOnly || size < mappedFrom) {
            auto* buffer = static_cast<unsigned char*>(std::calloc(size, 1));
            if (buffer == nullptr) return nullptr;
            return {buffer, FreeHeap{}};
        }
        unsigned char* buffer = nullptr;
        Region* const region = regions.Take(size, toFill, buffer);
        if (region == nullptr) return nullptr;
        return {buffer, ReleaseRegion{region, size}};
    } catch (const std::bad_alloc&) {
        return nullptr;  // The pointer's bookkeeping did not fit; it has released the buffer.
    }
}

}  // namespace

std::shared_ptr<unsigned char[]> AllocateZeroed(std::size_t count, std::size_t elementSize) noexcept {
    return Allocate(count, elementSize, false);
}

std::shared_ptr<unsigned char[]> AllocateToFill(std::size_t count, std::size_t elementSize) noexcept {
    return Allocate(count, elementSize, true);
}

bool HasOwnPages(std::size_t size) noexcept {
    return !heapOnly && size >= largePagesFrom;
}

}  // namespace orvalo
