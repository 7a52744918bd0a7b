#pragma once

namespace orvalo::support {

/// Whether the processor or the system is an imitation, under which what is drawn at random is repeated less often.
#if defined(ORVALO_EMULATED)
inline constexpr bool emulated = true;
#else
inline constexpr bool emulated = false;
#endif

}  // namespace orvalo::support
