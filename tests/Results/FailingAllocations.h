#pragma once

#include <cstddef>

namespace orvalo {

/// How many more allocations of this thread by operator new succeed.
extern thread_local std::size_t allocationsLeft;

}  // namespace orvalo
