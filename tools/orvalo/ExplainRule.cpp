#include "ExplainRule.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include <Orvalo3DReader/Check/Rules.h>

#include "HarmlessText.h"
#include "NearestWord.h"

namespace {

constexpr std::size_t widestText = 100;

std::string Kind(const orvalo::Rule& rule) {
    const char* severity = rule.severity == orvalo::Severity::Error ? "error" : "warning";
    return rule.code > 0 ? fmt::format("{} {}", severity, rule.code) : severity;
}

/// Breaks a text between words.
std::string Wrapped(std::string_view text, std::size_t width) {
    std::string lines;
    std::size_t column = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (column > 0 && column + 1 + end > width) {
            lines += '\n';
            column = 0;
        } else if (column > 0) {
            lines += ' ';
            ++column;
        }
        lines += text.substr(0, end);
        column += end;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines + '\n';
}

std::string Indented(std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines += fmt::format("    {}\n", text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string ToText(const orvalo::Rule& rule, const TextStyle& style) {
    const bool isError = rule.severity == orvalo::Severity::Error;
    return fmt::format("{} ({})\n\n{}\n{}\n{}\n{}\n{}", style.Bold(rule.name),
                       isError ? style.Error(Kind(rule)) : style.Warning(Kind(rule)),
                       Wrapped(rule.explanation, std::min(style.Width(), widestText)), style.Bold("Bad:"),
                       Indented(rule.bad), style.Bold("Good:"), Indented(rule.good));
}

std::string ToMarkdown(const orvalo::Rule& rule) {
    return fmt::format("\n## {}\n\n*{}*\n\n{}\nBad:\n\n{}\nGood:\n\n{}", rule.name, Kind(rule),
                       Wrapped(rule.explanation, 120), Indented(rule.bad), Indented(rule.good));
}

std::string MarkdownHead(const std::vector<const orvalo::Rule*>& rules) {
    std::string text =
        "# Diagnostics\n\n"
        "All that `orvalo check` can say of a file, by the names of the rules. Errors have the code that the library\n"
        "reports; warnings have none, and `--disable RULE` silences them. `orvalo check --explain RULE` prints an\n"
        "entry of this page, which is itself printed by `orvalo check --explain=all --format=markdown`.\n\n"
        "| rule | severity | code |\n|---|---|---|\n";
    for (const orvalo::Rule* rule : rules) {
        text += fmt::format("| [{0}](#{0}) | {1} | {2} |\n", rule->name,
                            rule->severity == orvalo::Severity::Error ? "error" : "warning",
                            rule->code > 0 ? std::to_string(rule->code) : "");
    }
    return text;
}

std::vector<const orvalo::Rule*> Find(const std::string& nameOrCode) {
    std::vector<const orvalo::Rule*> found;
    for (const orvalo::Rule& rule : orvalo::Rules()) {
        const bool meant = nameOrCode == "all" || nameOrCode == rule.name ||
                           (rule.code > 0 && nameOrCode == std::to_string(rule.code));
        if (meant) found.push_back(&rule);
    }
    return found;
}

}  // namespace

std::vector<std::string> RuleNames() {
    std::vector<std::string> names;
    for (const orvalo::Rule& rule : orvalo::Rules()) names.emplace_back(rule.name);
    return names;
}

ExitStatus PrintRules(const std::string& nameOrCode, bool markdown, const TextStyle& style) {
    const std::vector<const orvalo::Rule*> rules = Find(nameOrCode);
    if (rules.empty() && nameOrCode != "all") {
        const std::string nearest = NearestWord(nameOrCode, RuleNames());
        fmt::print(stderr, "orvalo: there is no rule '{}'.{}\n", Harmless(nameOrCode),
                   nearest.empty() ? " All of them: orvalo check --explain=all" : " Did you mean " + nearest + "?");
        return ExitStatus::wrongUsage;
    }
    if (markdown) fmt::print("{}", MarkdownHead(rules));
    bool first = true;
    for (const orvalo::Rule* rule : rules) {
        if (!first && !markdown) fmt::print("\n\n");
        first = false;
        fmt::print("{}", markdown ? ToMarkdown(*rule) : ToText(*rule, style));
    }
    return ExitStatus::good;
}
