#pragma once

#include <cstdint>

/// How a scan for a token counts bytes. Line and column count every byte; the position that messages report follows
/// them only in part, by rules that clients know.
namespace orvalo {

/// Bytes below this one are the control characters up to the carriage return.
inline constexpr unsigned char firstToHoldPosition = 14;

/// Whether the reported position moves to the byte after `previous`, which is the byte before it in the scan, or 0 at
/// the start of the scan. After a space, a comma or anything printable the position stays where it was.
constexpr bool MovesPosition(unsigned char previous) {
    return previous < firstToHoldPosition;
}

/// Counts the byte after `previous` and returns whether the reported position moves to it. A line feed is counted with
/// the byte after it, so that one which ends a token is not.
inline bool CountByte(unsigned char previous, std::uint64_t& line, std::uint64_t& column) {
    if (previous == '\n') {
        column = 0;
        ++line;
    }
    ++column;
    return MovesPosition(previous);
}

}  // namespace orvalo
