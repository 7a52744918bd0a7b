#include <algorithm>
#include <set>

#include "Check/Warnings.h"

namespace orvalo {

namespace {

/// The number that begins a text: up to a sign that begins another one, say. Those of rows are digits alone.
std::string NumberIn(const std::string& text, bool inRow) {
    std::size_t end = std::min(text.find_first_not_of(inRow ? "0123456789" : "0123456789.+-eE"), text.size());
    for (std::size_t i = 1; i < end; ++i) {
        const bool isSign = text[i] == '+' || text[i] == '-';
        if (isSign && text[i - 1] != 'e' && text[i - 1] != 'E') end = i;
    }
    return text.substr(0, end);
}

}  // namespace

void WarnOfNumbers(Warnings& warnings) {
    constexpr std::size_t shownDigits = 40;
    // What is refused need not be told of.
    std::set<std::pair<int, std::uint64_t>> refused;
    for (const PlacedDiagnostic& error : warnings.Diagnostics()) {
        refused.emplace(error.place.file, error.place.place.offset);
    }
    for (const ChangedNumber& number : warnings.Record().changedNumbers) {
        if (refused.count({number.place.file, number.place.place.offset}) != 0) continue;
        const bool wrapped = number.change == NumberChange::Wrapped;
        const std::string taken = std::to_string(number.taken);
        std::string written = NumberIn(warnings.TokenAt(number.place), number.row > 0);
        const std::uint64_t length = written.size();
        if (written.size() > shownDigits) written = written.substr(0, shownDigits) + "...";
        std::string message = wrapped ? "The number " : "A whole number is due here: ";
        message.append(written).append(wrapped ? " does not fit 32 bits and is read as " : " is cut off to ");
        message.append(taken).append(".");
        if (number.more > 0) message = std::to_string(number.more) + " more of these in this section.";
        Diagnostic& added =
            warnings.Add(wrapped ? "wrapped-number" : "truncated-fraction", number.place, length, message);
        added.row = number.row;
        if (!wrapped && number.more == 0 && length > 0) added.fixes.push_back({added.place, length, taken});
    }
}

}  // namespace orvalo
