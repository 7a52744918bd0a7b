#include "Common/PagesWindows.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include <windows.h>

#include "Common/Platform.h"

// Windows promises memory for every page that is committed, whether it will be written or not. So pages are reserved
// only, which costs address space, and the first access to some of them, which faults, has them committed.

namespace orvalo::platform {

namespace {

constexpr std::size_t StepOf(Pages pages) {
    return pages == Pages::Large ? std::size_t{2} << 20U : std::size_t{64} << 10U;
}

std::uintptr_t AddressOf(const void* place) {
    return reinterpret_cast<std::uintptr_t>(place);
}

/// Pages that were reserved together.
struct Reservation {
    std::uintptr_t begin;
    std::uintptr_t end;
    /// How much is committed at a time: a power of two.
    std::size_t step;
    Reservation* next;

    /// False where there is no memory left.
    bool Commit(std::uintptr_t from, std::uintptr_t to) const {
        from = std::max(begin, from & ~(step - 1));
        to = std::min(end, (to + step - 1) & ~(step - 1));
        void* const start = reinterpret_cast<void*>(from);  // NOLINT(performance-no-int-to-ptr)
        return ::VirtualAlloc(start, to - from, MEM_COMMIT, PAGE_READWRITE) != nullptr;
    }
};

/// All reservations of the process. A fault that any thread meets is looked up here, so the lock is one that needs no
/// initialisation, and nothing that may fault is done while it is held.
class Reservations {
public:
    Reservations() = default;
    Reservations(const Reservations&) = delete;
    Reservations& operator=(const Reservations&) = delete;
    /// The library may be unloaded.
    ~Reservations() {
        if (handler_ != nullptr) ::RemoveVectoredExceptionHandler(handler_);
    }

    bool Add(Reservation* added) noexcept {
        ::AcquireSRWLockExclusive(&lock_);
        if (handler_ == nullptr) handler_ = ::AddVectoredExceptionHandler(1, CommitAtFault);
        const bool watched = handler_ != nullptr;
        if (watched) {
            added->next = first_;
            first_ = added;
        }
        ::ReleaseSRWLockExclusive(&lock_);
        return watched;
    }

    /// Takes out the one that begins there; null where there is none.
    Reservation* Take(std::uintptr_t begin) noexcept {
        ::AcquireSRWLockExclusive(&lock_);
        Reservation** link = &first_;
        while (*link != nullptr && (*link)->begin != begin) link = &(*link)->next;
        Reservation* const taken = *link;
        if (taken != nullptr) *link = taken->next;
        ::ReleaseSRWLockExclusive(&lock_);
        return taken;
    }

    void SetStep(std::uintptr_t place, std::size_t step) noexcept {
        ::AcquireSRWLockExclusive(&lock_);
        for (Reservation* at = first_; at != nullptr; at = at->next) {
            if (place >= at->begin && place < at->end) at->step = step;
        }
        ::ReleaseSRWLockExclusive(&lock_);
    }

    enum class Answer { NotMapped, Committed, NoMemory };
    Answer Commit(std::uintptr_t from, std::uintptr_t to) noexcept {
        Answer answer = Answer::NotMapped;
        ::AcquireSRWLockShared(&lock_);
        for (const Reservation* at = first_; at != nullptr; at = at->next) {
            if (from < at->begin || from >= at->end) continue;
            answer = at->Commit(from, to) ? Answer::Committed : Answer::NoMemory;
            break;
        }
        ::ReleaseSRWLockShared(&lock_);
        return answer;
    }

private:
    static LONG CALLBACK CommitAtFault(EXCEPTION_POINTERS* fault) noexcept;

    SRWLOCK lock_ = SRWLOCK_INIT;
    Reservation* first_ = nullptr;
    void* handler_ = nullptr;
};

Reservations reservations;

LONG CALLBACK Reservations::CommitAtFault(EXCEPTION_POINTERS* fault) noexcept {
    constexpr ULONG_PTR toExecute = 8;
    const EXCEPTION_RECORD& record = *fault->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    if (record.ExceptionInformation[0] == toExecute) return EXCEPTION_CONTINUE_SEARCH;
    const std::uintptr_t place = record.ExceptionInformation[1];
    return reservations.Commit(place, place + 1) == Answer::Committed ? EXCEPTION_CONTINUE_EXECUTION
                                                                      : EXCEPTION_CONTINUE_SEARCH;
}

std::size_t PageSize() noexcept {
    SYSTEM_INFO system;
    ::GetSystemInfo(&system);
    return system.dwPageSize;
}

}  // namespace

void* MapPages(std::size_t size, Pages pages) noexcept {
    auto* const reservation = new (std::nothrow) Reservation{};
    if (reservation == nullptr) return nullptr;
    void* const start = ::VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_READWRITE);
    *reservation = {AddressOf(start), AddressOf(start) + size, StepOf(pages), nullptr};
    if (start != nullptr && reservations.Add(reservation)) return start;
    if (start != nullptr) ::VirtualFree(start, 0, MEM_RELEASE);
    delete reservation;
    return nullptr;
}

bool UnmapPages(void* start, std::size_t) noexcept {
    // Taken out first: another thread may be given the same addresses at once.
    Reservation* const taken = reservations.Take(AddressOf(start));
    if (taken == nullptr) return false;
    const bool released = ::VirtualFree(start, 0, MEM_RELEASE) != 0;
    if (!released && reservations.Add(taken)) return false;
    delete taken;
    return released;
}

void DiscardPages(void* start, std::size_t size) noexcept {
    static const std::size_t pageSize = PageSize();
    const std::size_t before = (pageSize - AddressOf(start) % pageSize) % pageSize;
    if (size < before + pageSize) return;
    ::VirtualFree(static_cast<char*>(start) + before, (size - before) / pageSize * pageSize, MEM_DECOMMIT);
}

void AdvisePages(void* start, std::size_t, Pages pages) noexcept {
    reservations.SetStep(AddressOf(start), StepOf(pages));
}

void CommitPages(void* start, std::size_t size) noexcept {
    CommitIfMapped(start, size);
}

bool CommitIfMapped(void* start, std::size_t size) noexcept {
    const std::uintptr_t from = AddressOf(start);
    return reservations.Commit(from, from + size) != Reservations::Answer::NoMemory;
}

}  // namespace orvalo::platform
