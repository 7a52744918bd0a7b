#pragma once

#include <cstdint>

#include "Common/FastDecimal.h"
#include "Reader/LexerTable.h"

/// What the lexer and the readers of bulk rows share of counting bytes and of scanning numbers.
namespace orvalo {

/// Bytes below this one are the control characters up to the carriage return. Behind one of them the reported position
/// moves on; after a space, a comma or anything printable it stays where it was.
inline constexpr unsigned char positionStays = 14;

/// Counts a byte of a scan, `previous` being the byte before it in the scan or 0, and returns whether the reported
/// position moves to it. A line feed is counted with the byte behind it, so that one which ends a token is not.
inline bool CountByte(unsigned char previous, std::uint64_t& line, std::uint64_t& column) {
    if (previous == '\n') {
        column = 0;
        ++line;
    }
    ++column;
    return previous < positionStays;
}

/// Whether a number that goes up to `stop` is ended there, before `end`, by a blank, a comment or a line end.
inline bool EndsPlainNumber(const char* stop, const char* end) {
    const lexer::Class terminator = lexer::classOf[static_cast<unsigned char>(*stop)];
    return stop < end && terminator >= lexer::Blank && terminator <= lexer::LineEnd;
}

/// What ScanPlainNumber gives for the numbers that FastDecimal leaves.
const char* ScanLongNumber(const char* p, const char* end, double& value);

/// Converts the number at `p` if it is one of the common kind: no blank behind the sign, and all of it before `end`.
/// Returns where it ends, or null.
inline const char* ScanPlainNumber(const char* p, const char* end, double& value) {
    double number = 0.0;
    const char* stop = FastDecimal(p, number);
    if (stop == nullptr) stop = ScanLongNumber(p, end, number);
    if (stop == nullptr || !EndsPlainNumber(stop, end)) return nullptr;
    value = number;
    return stop;
}

}  // namespace orvalo
