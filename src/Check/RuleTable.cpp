#include "Check/RuleTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

#include <Orvalo3DReader/Check/Rules.h>

#include "Check/RulesOfLists.h"
#include "Check/RulesOfResults.h"
#include "Check/RulesOfSections.h"
#include "Check/RulesOfText.h"
#include "Check/RulesOfValues.h"
#include "Check/RulesOfWarnings.h"

namespace orvalo {

namespace {

constexpr bool ByName(const Rule& a, const Rule& b) {
    return std::string_view(a.name) < b.name;
}

/// All of some tables in one, in the order of their names.
template <std::size_t... sizes>
constexpr auto Sorted(const Rule (&... tables)[sizes]) {
    std::array<Rule, (sizes + ...)> all{};
    auto* end = all.begin();
    ((end = std::copy(std::begin(tables), std::end(tables), end)), ...);
    std::sort(all.begin(), all.end(), ByName);
    return all;
}

constexpr auto rules = Sorted(textRules, valueRules, listRules, sectionRules, resultsRules, warningRules);

/// Lower-case words and hyphens between them.
constexpr bool IsKebabCase(std::string_view name) {
    char previous = '-';
    for (const char c : name) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        if (!letter && (c != '-' || previous == '-')) return false;
        previous = c;
    }
    return previous != '-';
}

constexpr bool AreGood() {
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (!IsKebabCase(rules[i].name) || (i > 0 && !ByName(rules[i - 1], rules[i]))) return false;
        for (std::size_t other = 0; other < i; ++other) {
            if (rules[i].code != 0 && rules[i].code == rules[other].code) return false;
        }
    }
    return true;
}
static_assert(AreGood(), "rules have names of their own, in kebab-case, and at most one stands for a code");

}  // namespace

RuleList Rules() {
    return {rules.data(), rules.size()};
}

const Rule* FindRule(const char* name) {
    const std::string_view wanted = name;
    const auto* const found = std::lower_bound(
        rules.begin(), rules.end(), wanted, [](const Rule& rule, std::string_view text) { return rule.name < text; });
    return found != rules.end() && found->name == wanted ? found : nullptr;
}

const char* RuleOfCode(int code) {
    const auto* const found =
        std::find_if(rules.begin(), rules.end(), [&](const Rule& rule) { return rule.code == code; });
    return code != 0 && found != rules.end() ? found->name : "error";
}

}  // namespace orvalo
