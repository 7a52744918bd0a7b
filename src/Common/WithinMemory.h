#pragma once

#include <cstring>
#include <new>
#include <stdexcept>

#include "Common/Raise.h"

namespace orvalo {

/// Returns what `action` returns. Where memory does not suffice for it, raises OutOfMemory as `sourceModule` in
/// `line`: of the module's path only what clients see of it, which is so short that it takes nothing from the heap
/// that has just failed.
template <class Action>
auto WithinMemory(const char* sourceModule, int line, const Action& action) {
    try {
        return action();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    const char* const separator = std::strrchr(sourceModule, '\\');
    Raise(separator == nullptr ? sourceModule : separator + 1, line, ReaderMessages::OutOfMemory);
}

}  // namespace orvalo
