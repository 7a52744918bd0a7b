#include "Write/Refusal.h"

#include <algorithm>
#include <cmath>

#include <Orvalo3DReader/Write/WriteError.h>

#include "Common/Bytes.h"
#include "Common/Raise.h"
#include "Reader/LexerTable.h"
#include "Write/ShortestDecimal.h"

namespace orvalo {

void Append(std::string& text, std::string_view part) {
    text += Quoted(part);
}

void Append(std::string& text, const Subject& subject) {
    Append(text, subject.kind);
    if (subject.number >= 0) text += " no. " + std::to_string(subject.number);
}

void Append(std::string& text, double number) {
    char shown[64];
    if (std::isnan(number)) {
        text += "NaN";
    } else {
        text.append(shown, WriteDecimal(shown, number));
    }
}

void AppendInteger(std::string& text, long long number) {
    text += std::to_string(number);
}

void ThrowRefusal(const std::string& text) {
    throw WriteError(text);
}

void CheckName(const Subject& subject, std::string_view what, std::string_view name) {
    const auto kept = [](char c) { return lexer::IsKept(lexer::classOf[static_cast<unsigned char>(c)]); };
    if (!std::all_of(name.begin(), name.end(), kept)) {
        Refuse(subject, ": the ", what, " '", name, "' has characters other than letters, digits and _ . + - =");
    }
    if (std::any_of(name.begin(), name.end(), [](char c) { return ToLower(c) != c; })) {
        Refuse(subject, ": the ", what, " '", name, "' would be read back in lower case");
    }
}

void CheckNumber(const Subject& subject, std::string_view what, double value) {
    if (std::isnan(value)) Refuse(subject, ": the ", what, " is not a number");
}

void CheckAtLeast(const Subject& subject, std::string_view what, double value, double bound) {
    CheckNumber(subject, what, value);
    if (value < bound) Refuse(subject, ": the ", what, " is ", value, ", and must be ", bound, " or more");
}

void CheckAbove(const Subject& subject, std::string_view what, double value, double bound) {
    CheckNumber(subject, what, value);
    if (value <= bound) Refuse(subject, ": the ", what, " is ", value, ", and must be above ", bound);
}

void CheckId(const Subject& subject, int ownId) {
    if (subject.number < 1) Refuse(subject.kind, " ", subject.number, ": an ID must be 1 or more");
    if (subject.number != ownId) Refuse(subject, ": its own ID is another one, ", ownId);
}

}  // namespace orvalo
