#include <algorithm>
#include <cctype>
#include <cstddef>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/FileSigns.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

/// A word that holds several of a list, such as UV: they are to stand apart.
std::string Apart(const WordList& words, std::string_view text) {
    std::string apart;
    while (!text.empty()) {
        std::size_t taken = 0;
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (text.starts_with(words[i])) taken = std::max(taken, words[i].size());
        }
        if (taken == 0) return {};
        apart += (apart.empty() ? "" : " ") + std::string(text.substr(0, taken));
        text.remove_prefix(taken);
    }
    return apart;
}

/// The first word of a list that goes on after `text`, such as U0 after U.
std::string Longer(const WordList& words, std::string_view text) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].starts_with(text) && words[i].size() == text.size() + 1) return std::string(words[i]);
    }
    return {};
}

/// Proposes what was meant in a list of words that the current token ended.
bool ExplainEndedList(Diagnostic& diagnostic, ErrorCollector& errors, const WordList& list) {
    const std::string& text = errors.Core().token.text;
    std::string meant = Apart(list, text);
    if (meant.empty()) meant = Longer(list, text);
    if (meant.empty() && list.Nearest(text)) meant = *list.Nearest(text);
    if (meant.empty()) return false;
    const std::string written = InCaseOf(meant, errors.Source().TokenAt(diagnostic.place));
    AddNote(diagnostic, "Did you mean " + written + "? The words here are " + Listed(list) + ".");
    AddFix(diagnostic, written);
    for (std::size_t i = 0; i < list.size(); ++i) diagnostic.expected.emplace_back(list[i]);
    return true;
}

/// The sections of which `word` is a property.
std::string OwnersOf(std::string_view word) {
    std::string owners;
    for (const Section& section : sections) {
        if (section.words().Has(word) && word != "end")
            owners += (owners.empty() ? "" : ", ") + std::string(section.name);
    }
    return owners;
}

void ExplainMissingEnd(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return;
    const std::string name = section->section->name;
    AddNote(diagnostic, name + " begins here and has no END.", errors.record.PlaceOf(section->place), name.size());
    diagnostic.fixes.push_back({diagnostic.place, 0, "END\n"});
    const std::string lacking = Joined(errors.Core().missing);
    if (!lacking.empty()) AddNote(diagnostic, "It lacks " + lacking + " besides.");
}

}  // namespace

bool ExplainSectionAsProperty(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const section = errors.CurrentSection();
    const auto& open = errors.OpenProperties();
    if (section == nullptr || open.empty() || !errors.Core().BeginsSection(open.back().word)) return false;
    const std::string name = section->section->name;
    AddNote(diagnostic, name + " begins here and has no END.", errors.record.PlaceOf(section->place), name.size());
    const InputPlace place = errors.record.PlaceOf(open.back().place);
    const std::string taken(errors.Source().TokenAt(place));
    AddNote(diagnostic, "So this is taken for its property '" + std::string(open.back().word) + "', not for a section.",
            place, taken.size());
    diagnostic.fixes.push_back({place, 0, "END\n"});
    return true;
}

void ExplainWord(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (errors.Core().expected) AddExpected(diagnostic, errors, *errors.Core().expected);
}

void ExplainKeyword(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    if (!core.expected || ExplainNeighbours(diagnostic, errors)) return;
    const bool keyword = core.token.type == TokenType::Keyword;
    const bool misspeltSection =
        keyword && !core.expected->Nearest(core.token.text) && WordList(sections).Nearest(core.token.text).has_value();
    if (core.AtSection() || misspeltSection) {
        AddExpected(diagnostic, errors, misspeltSection ? WordList(sections) : *core.expected);
        return ExplainMissingEnd(diagnostic, errors);
    }
    const auto& open = errors.CurrentSection();
    const bool afterList = core.endedList && open != nullptr;
    if (afterList && core.token.type == TokenType::Keyword && !core.expected->Nearest(core.token.text) &&
        ExplainEndedList(diagnostic, errors, *core.endedList)) {
        return;
    }
    AddExpected(diagnostic, errors, *core.expected);
    const std::string owners = OwnersOf(core.token.text);
    if (core.token.type == TokenType::Keyword && !owners.empty()) {
        AddNote(diagnostic, "'" + core.token.text + "' is a property of " + owners + ".");
    }
}

void ExplainSectionName(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    if (ExplainNeighbours(diagnostic, errors)) return;
    const char* const results =
        diagnostic.place.offset == 0 ? LooksLikeResults(errors.Source().From(diagnostic.place)) : nullptr;
    if (results != nullptr) {
        AddNote(diagnostic, results);
        return errors.End();
    }
    AddExpected(diagnostic, errors, sections, true);
    if (errors.record.sections.empty()) return;
    const SectionRecord& last = errors.record.sections.back();
    const std::string name = last.section->name;
    if (core.IsKeyword("end")) {
        AddNote(diagnostic, "This END closes nothing: " + name + " ended here.", errors.record.PlaceOf(last.endPlace),
                3);
        AddFix(diagnostic, "");
    } else if (core.token.type == TokenType::Keyword && last.section->words().Has(core.token.text)) {
        AddNote(diagnostic, "'" + core.token.text + "' is a property of " + name + ", which ended here.",
                errors.record.PlaceOf(last.endPlace), 3);
    }
}

void AddNote(Diagnostic& diagnostic, std::string message) {
    diagnostic.notes.push_back({std::move(message), {}, 0});
}

void AddNote(Diagnostic& diagnostic, std::string message, const InputPlace& place, std::uint64_t length) {
    diagnostic.notes.push_back({std::move(message), place, length});
}

void AddFix(Diagnostic& diagnostic, std::string replacement) {
    diagnostic.fixes.push_back({diagnostic.place, diagnostic.length, std::move(replacement)});
}

std::string InCaseOf(std::string_view word, std::string_view like) {
    std::string written(word);
    const bool upper = std::none_of(like.begin(), like.end(), [](char c) { return c >= 'a' && c <= 'z'; }) &&
                       std::any_of(like.begin(), like.end(), IsUpper);
    if (upper) {
        for (char& c : written) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return written;
}

std::string Listed(const WordList& words, bool capitals) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " or " : ", ";
        text += capitals || words[i] == "end" ? InCaseOf(words[i], "END") : std::string(words[i]);
    }
    return text;
}

void AddExpected(Diagnostic& diagnostic, ErrorCollector& errors, const WordList& words, bool capitals) {
    for (std::size_t i = 0; i < words.size(); ++i) diagnostic.expected.emplace_back(words[i]);
    const Token& token = errors.Core().token;
    if (token.type == TokenType::Keyword && !words.Has(token.text)) {
        if (const auto meant = words.Nearest(token.text)) {
            const std::string written = InCaseOf(*meant, errors.Source().TokenAt(diagnostic.place));
            AddNote(diagnostic, "Did you mean " + written + "?");
            AddFix(diagnostic, written);
            return;
        }
    }
    AddNote(diagnostic, "Expected here: " + Listed(words, capitals) + ".");
}

}  // namespace orvalo
