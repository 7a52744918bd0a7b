#include "Check/ErrorCollector.h"

#include <algorithm>
#include <initializer_list>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/Explain.h"
#include "Check/RuleTable.h"
#include "Common/Bytes.h"

namespace orvalo {

namespace {

using M = ReaderMessages;

/// Enough for any file that somebody wrote, and an end to those that nobody did.
constexpr std::size_t maxErrors = 99;

}  // namespace

void ErrorCollector::UpdateFiles() {
    for (int i = static_cast<int>(record.files.size()); i < core_.lexer.FileCount(); ++i) {
        const LexerFile& file = core_.lexer.File(i);
        record.files.push_back({file.path, file.parent, file.includedAt});
    }
}

ReadPlace ErrorCollector::Place() const {
    const auto [file, place] = core_.lexer.MarkedPlace();
    return {file, place};
}

void ErrorCollector::SectionBegins(const Section& section) {
    SectionRecord begun;
    begun.section = &section;
    begun.place = Place();
    if (core_.SectionWasHeld()) {
        auto& properties = record.sections.back().properties;
        begun.place = properties.back().place;
        properties.pop_back();
    }
    begun.errorsBefore = errors_;
    record.sections.push_back(std::move(begun));
    inSection_ = true;
    inRows_.clear();
    moreInRows_.clear();
    changed_ = {};
    open_.clear();
    rowShapeTold_ = false;
    missingTold_.clear();
}

void ErrorCollector::SectionEnds() {
    record.sections.back().endPlace = Place();
    // A property that switches the section off ends with it.
    while (!open_.empty()) PropertyEnds();
    inSection_ = false;
}

void ErrorCollector::PropertyBegins(std::string_view word) {
    PropertyRecord begun;
    begun.word = word;
    begun.nested = !open_.empty();
    if (!begun.nested && word == "table") {
        std::erase_if(missingTold_, [](const auto& told) { return told.first; });
    }
    begun.place = begun.valuePlace = Place();
    open_.push_back(std::move(begun));
}

void ErrorCollector::ValueBegins() {
    PropertyRecord& property = open_.back();
    property.valuePlace = Place();
    property.valueType = core_.token.type;
    property.value = core_.token.value;
    if (core_.token.type != TokenType::Number) property.text = core_.token.text.substr(0, 64);
}

void ErrorCollector::PropertyEnds() {
    if (open_.empty()) return;
    open_.back().endPlace = Place();
    if (inSection_) record.sections.back().properties.push_back(std::move(open_.back()));
    open_.pop_back();
}

void ErrorCollector::RowBegins() {
    PropertyBegins({});
    ValueBegins();
}

std::uint64_t ErrorCollector::BulkRowBegins(std::uint64_t row) {
    constexpr std::uint64_t perMark = SectionRecord::rowsPerMark;
    auto& marks = record.sections.back().rowMarks;
    if (row == 0) marks.clear();
    // Rows that were passed over after an error may have had one.
    if (row == marks.size() * perMark) marks.push_back(Place());
    return (row / perMark + 1) * perMark;
}

void ErrorCollector::RowsRead(std::uint64_t read) {
    record.sections.back().rowsRead = read;
}

void ErrorCollector::NumberChanges(NumberChange change, std::int64_t taken) {
    const std::uint64_t known = changed_[static_cast<std::size_t>(change)]++;
    if (known <= options_.perSection) record.changedNumbers.push_back({Place(), change, taken, core_.row});
    if (known < options_.perSection) return;
    const auto isOne = [change](const ChangedNumber& number) { return number.change == change; };
    ++std::find_if(record.changedNumbers.rbegin(), record.changedNumbers.rend(), isOne)->more;
}

const SectionRecord* ErrorCollector::FindSection(std::string_view section, std::string_view property,
                                                 double number) const {
    for (const SectionRecord& candidate : record.sections) {
        if (candidate.section->word != section) continue;
        const PropertyRecord* const found = candidate.Find(property);
        if (found != nullptr && found->valueType == TokenType::Number && found->value == number) return &candidate;
    }
    return nullptr;
}

/// The properties on the line of a character that ends it, such as a comment sign of other formats, are not missing.
void ErrorCollector::SkipWords() {
    std::size_t at = 0;
    std::string line(source_.LineOf(core_.lexer.Place(), at));
    std::transform(line.begin(), line.end(), line.begin(), ToLower);
    const WordList words = record.sections.back().section->words();
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (line.find(words[i], at) != std::string::npos) missingTold_.insert({InOwnTable(), words[i]});
    }
}

/// Whatever the last property of that word is given, or the last one of all, is not to be relied on.
void ErrorCollector::FailLast(std::string_view word) {
    auto& properties = record.sections.back().properties;
    const auto last = std::find_if(properties.rbegin(), properties.rend(), [&](const PropertyRecord& property) {
        return word.empty() || property.word == word;
    });
    if (last != properties.rend()) last->failed = true;
}

/// Counts an error in a row; false once there are enough of its kind in the section.
bool ErrorCollector::CountsInSection(int code) {
    const std::uint64_t count = ++inRows_[code];
    if (count <= options_.perSection) return true;
    const auto [entry, added] = moreInRows_.emplace(code, diagnostics.size());
    if (added) {
        PlacedDiagnostic more = diagnostics.back();
        more.diagnostic.notes.clear();
        more.diagnostic.fixes.clear();
        diagnostics.push_back(std::move(more));
    }
    Diagnostic& diagnostic = diagnostics[entry->second].diagnostic;
    diagnostic.message = std::to_string(count - options_.perSection) + " more of these in the rows of this section.";
    return false;
}

bool ErrorCollector::Note(const Exception& failure) {
    UpdateFiles();
    spoilt_ = false;
    if (ended_) return false;
    if (Follows(failure)) {
        if (inSection_) record.sections.back().failed = true;
        return inSection_ || ++followedAtEnd_ < maxErrors;
    }
    const int code = failure.code();
    lastPlace_ = core_.lexer.MarkedPlace();
    lastCode_ = code;
    ++errors_;
    if (inSection_) record.sections.back().failed = true;
    for (PropertyRecord& property : open_) property.failed = true;
    if (code == M::LexInvalidChar.code && inSection_) SkipWords();
    // An ID that is taken was likely to be another one, and a number that belongs to nothing to be part of the last.
    if (code == M::TableIDReused.code) FailLast("id");
    if (code == M::UnknownKeyword.code && core_.token.type == TokenType::Number) FailLast({});
    if (code == M::SectionNameExpected.code) unknownSection_ = true;
    // The file likely held what was due next: one of the three leading sections, or after these any other.
    if (IsOfInclude(code)) (HasSection("cubes") ? unknownSection_ : unreadInclude_) = true;
    const bool materialNumber = code == M::InvalidMaterialNumber.code || code == M::MaterialIndexReused.code;
    const bool afterMaterials = code == M::SectionNameExpected.code && !record.sections.empty() &&
                                record.sections.back().section->order == SectionOrder::Materials;
    if (afterMaterials || (materialNumber && core_.token.type == TokenType::Number)) unknownMaterial_ = true;
    if (core_.row > 0) {
        if (!CountsInSection(code)) return true;
    } else if (++errorsOutsideRows_ >= maxErrors) {
        ended_ = true;
    }
    Add(failure);
    ended_ = ended_ || options_.firstOnly;
    return !ended_;
}

void ErrorCollector::Add(const Exception& failure) {
    PlacedDiagnostic added;
    added.place = Place();
    Diagnostic& diagnostic = added.diagnostic;
    diagnostic.severity = Severity::Error;
    diagnostic.code = failure.code();
    diagnostic.message = failure.what();
    diagnostic.rule = RuleOfCode(failure.code());
    diagnostic.place = core_.lexer.Place();
    diagnostic.row = core_.row;
    diagnostic.includedFrom = record.IncludedFrom(added.place.file);
    diagnostic.length = source_.TokenAt(diagnostic.place).size();
    Explain(diagnostic, *this);
    if (diagnostic.code == M::ObligatoryMissing.code || diagnostic.code == M::ObligatoryPropNotDefined.code) {
        for (const std::string_view word : core_.missing) missingTold_.insert({InOwnTable(), word});
    }
    diagnostics.push_back(std::move(added));
}

}  // namespace orvalo
