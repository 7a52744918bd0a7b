#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/ErrorCollector.h"
#include "Common/Bytes.h"

// Which errors only follow from those that are known.

namespace orvalo {

namespace {

using M = ReaderMessages;

/// Whether one of the sections that come first is not where it should be.
bool IsOfMissingSection(int code) {
    return code == M::AnalysisNotDefinedFirst.code || code == M::MaterialsSectionExpected.code ||
           code == M::CubesSectionExpected.code || code == M::AnalysisNotDefined.code ||
           code == M::MaterialsNotDefined.code || code == M::CubesNotDefined.code;
}

}  // namespace

bool ErrorCollector::SectionFailed(std::initializer_list<std::string_view> words) const {
    return std::any_of(record.sections.begin(), record.sections.end(), [&](const SectionRecord& section) {
        return section.failed && std::find(words.begin(), words.end(), section.section->word) != words.end();
    });
}

/// Whether a section of that word has an error in a property.
bool ErrorCollector::PropertyFailed(std::string_view section, std::string_view property) const {
    return std::any_of(record.sections.begin(), record.sections.end(), [&](const SectionRecord& candidate) {
        const PropertyRecord* const found = candidate.section->word == section ? candidate.Find(property) : nullptr;
        return found != nullptr && found->failed;
    });
}

/// Whether a section of that word does not give a property as it must.
bool ErrorCollector::PropertyUnknown(std::string_view section, std::string_view property) const {
    return PropertyFailed(section, property) ||
           std::any_of(record.sections.begin(), record.sections.end(), [&](const SectionRecord& candidate) {
               return candidate.section->word == section && candidate.Find(property) == nullptr;
           });
}

/// Whether a patch may have the table that is missing, had its ID been read.
bool ErrorCollector::PatchTableUnknown() const {
    for (const SectionRecord& section : record.sections) {
        if (section.section->word != "piezo") continue;
        std::size_t tables = 0;
        for (const PropertyRecord& property : section.properties) {
            const bool id = property.nested && property.word == "id";
            if (id && (property.failed || property.value == core_.subject)) return true;
            tables += property.word == "table" ? 1 : 0;
            tables -= id ? 1 : 0;
        }
        if (tables != 0) return true;
    }
    return false;
}

bool ErrorCollector::HasSection(std::string_view word) const {
    return std::any_of(record.sections.begin(), record.sections.end(),
                       [&](const SectionRecord& section) { return section.section->word == word; });
}

bool ErrorCollector::InOwnTable() const {
    return open_.size() > 1 || (open_.size() == 1 && open_.back().word == "table");
}

/// Whether it was told already, before the rows of the section, that these properties are missing.
bool ErrorCollector::MissingIsTold() const {
    return errors_ > 0 && std::all_of(core_.missing.begin(), core_.missing.end(), [&](std::string_view word) {
               return missingTold_.count({InOwnTable(), word}) != 0;
           });
}

/// Whether a file is not included for it, so that nobody knows what would have been read.
bool ErrorCollector::IsOfInclude(int code) {
    const bool opening = code == M::ErrorOpeningInputFile.code || code == M::ErrorReadingInputFile.code;
    if (opening || code == M::IncludeFNameMissing.code) return true;
    if (code < M::LexInvalidChar.code || code > M::LexUnexpectedEOL.code) return false;
    std::size_t at = 0;
    std::string before(source_.LineOf(core_.lexer.Place(), at).substr(0, at));
    before.resize(before.find_last_not_of(" \t") + 1);
    std::transform(before.begin(), before.end(), before.begin(), ToLower);
    return before.ends_with("include");
}

/// Whether an error that is found once all was read only follows from what is known.
bool ErrorCollector::FollowsAtEnd(int code) const {
    const bool unknown = unknownSection_ || (errors_ > 0 && record.sections.empty());
    if (code == M::ActuatorPiezoNotDefined.code) return unknown || SectionFailed({"actuator", "piezo"});
    if (code == M::SensorDumpNotDefined.code) return unknown || SectionFailed({"sensor", "dump"});
    if (code == M::TableMissing.code) {
        return unknownSection_ || PropertyUnknown("table", "id") ||
               FindSection("table", "id", core_.subject) != nullptr;
    }
    if (code == M::PiezoTableMissing.code) return PatchTableUnknown();
    // Without a time step no signal can be generated.
    if (code != M::OutOfMemory.code) return false;
    return !HasSection("analysis") || PropertyUnknown("analysis", "timestep") || PropertyFailed("actuator", "input") ||
           PropertyFailed("actuator", "duration");
}

/// Whether the error only follows from what is known.
bool ErrorCollector::Follows(const Exception& failure) const {
    const int code = failure.code();
    const bool atEnd = code == M::TableMissing.code || code == M::PiezoTableMissing.code;
    const bool samePlace = errors_ > 0 && lastPlace_ == core_.lexer.MarkedPlace();
    if (samePlace && code != M::RecursvieInclude.code && !atEnd && (inSection_ || code == lastCode_)) return true;
    if (core_.resuming && code >= M::LexInvalidChar.code && code <= M::LexUnexpectedEOL.code) {
        const auto [file, place] = core_.lexer.MarkedPlace();
        return !inSection_ || (lastPlace_->first == file && lastPlace_->second.line == place.line);
    }
    // A file that was not read may hold what is missing; or there is not even one section.
    if (IsOfMissingSection(code)) return unreadInclude_ || (errors_ > 0 && record.sections.empty());
    if (!inSection_) return FollowsAtEnd(code);
    if (code == M::ObligatoryMissing.code || code == M::ObligatoryPropNotDefined.code) return MissingIsTold();
    // How late a signal may start depends on the time step.
    if (code == M::InvalidPropertyValue.code && core_.token.value > 0.0 && open_.back().word == "start") {
        return PropertyUnknown("analysis", "timestep");
    }
    if (code == M::CountPropertyMissing.code) return record.sections.back().Find("count") != nullptr;
    // Rows in an included file end with it.
    if (code == M::NotEnoughCubes.code && inRows_.count(code) != 0 &&
        record.files[static_cast<std::size_t>(lastPlace_->first)].parent == Place().file) {
        return true;
    }
    return code == M::MaterialNotDefined.code && (unknownMaterial_ || !HasSection("materials"));
}

}  // namespace orvalo
