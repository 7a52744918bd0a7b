#include "Check/ResultsFindings.h"

#include <algorithm>
#include <utility>

#include "Check/RuleTable.h"

namespace orvalo {

Diagnostic* ResultsFindings::Add(const Exception& error, const InputPlace& place, std::uint64_t length,
                                 std::uint64_t row) {
    const int code = error.code();
    const std::uint64_t limit = std::max<std::uint64_t>(options_.perSection, 1);
    const std::uint64_t count = ++counts_[code];
    ++errors_;
    if (count > limit + 1) {
        diagnostics[more_[code]].message = std::to_string(count - limit) + " more of these.";
        return nullptr;
    }
    if (count > limit) more_[code] = diagnostics.size();
    Diagnostic diagnostic;
    diagnostic.code = code;
    diagnostic.rule = RuleOfCode(code);
    diagnostic.message = count > limit ? "1 more of these." : error.what();
    diagnostic.place = place;
    diagnostic.length = length;
    diagnostic.row = row;
    diagnostics.push_back(std::move(diagnostic));
    return count > limit ? nullptr : &diagnostics.back();
}

Diagnostic& ResultsFindings::AddWarning(const char* rule, std::string message) {
    Diagnostic diagnostic;
    diagnostic.severity = Severity::Warning;
    diagnostic.rule = rule;
    diagnostic.message = std::move(message);
    diagnostics.push_back(std::move(diagnostic));
    return diagnostics.back();
}

std::string Shown(std::string_view text) {
    constexpr std::size_t longest = 40;
    std::size_t size = std::min(text.size(), longest);
    // A character of several bytes is not to be cut in two.
    while (size < text.size() && size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80) --size;
    std::string shown(text.substr(0, size));
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    return '\'' + shown + (size < text.size() ? "...'" : "'");
}

}  // namespace orvalo
