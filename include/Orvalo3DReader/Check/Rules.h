#pragma once

#include <cstddef>

#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// What there is to say of a kind of diagnostic. All texts are static.
struct Rule {
    /// The stable name, in kebab-case.
    const char* name;
    Severity severity;
    /// The catalogue entry that the reader raises for it; 0 for what only the checker knows.
    int code;
    /// What is wrong and why it matters, in a sentence or two.
    const char* explanation;
    /// A piece of a file that breaks the rule, and one that does not.
    const char* bad;
    const char* good;
};

/// All rules that diagnostics can name, in the order of their names.
struct RuleList {
    const Rule* first;
    std::size_t count;
    const Rule* begin() const { return first; }
    const Rule* end() const { return first + count; }
    std::size_t size() const { return count; }
};
ORVALO3DREADER_EXPORT RuleList Rules();

/// The rule of that name, or null.
ORVALO3DREADER_EXPORT const Rule* FindRule(const char* name);

}  // namespace orvalo
