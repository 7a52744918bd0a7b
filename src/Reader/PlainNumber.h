#pragma once

#include "Common/FastDecimal.h"
#include "Reader/LexerTable.h"

/// Scanning of numbers, for the lexer and for the readers of bulk data.
namespace orvalo {

/// Whether a number that goes up to `stop` is ended there, before `end`, by a blank, a comment or a line end.
inline bool EndsPlainNumber(const char* stop, const char* end) {
    const lexer::Class terminator = lexer::classOf[static_cast<unsigned char>(*stop)];
    return stop < end && terminator >= lexer::Blank && terminator <= lexer::LineEnd;
}

/// What ScanPlainNumber gives for the numbers that FastDecimal leaves.
const char* ScanLongNumber(const char* p, const char* end, double& value);

/// Converts the number at `p` if it is one of the common kind: no blank after the sign, and all of it before `end`.
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
