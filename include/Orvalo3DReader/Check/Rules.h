#pragma once

#include <cstddef>

#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// What there is to say of a kind of diagnostic. All texts are static.
struct Rule {
    /// The stable name, in kebab-case.
    const char* name;
    /// Of the diagnostics that name it.
    Severity severity;
    /// The catalogue entry that the reader raises for it; 0 for what only the checker knows.
    int code;
    /// What is wrong and why it matters, in a sentence or two.
    const char* explanation;
    /// A piece of a file that breaks the rule.
    const char* bad;
    /// The same piece as it should be.
    const char* good;
};

/// All rules that diagnostics can name, in the order of their names.
struct RuleList {
    /// The first of them; they live as long as the library.
    const Rule* first;
    /// How many there are.
    std::size_t count;
    /// The first one.
    const Rule* begin() const { return first; }
    /// After the last one.
    const Rule* end() const { return first + count; }
    /// As `count`.
    std::size_t size() const { return count; }
};
ORVALO3DREADER_EXPORT RuleList Rules();

/// The rule of that name, or null.
ORVALO3DREADER_EXPORT const Rule* FindRule(const char* name);

}  // namespace orvalo
