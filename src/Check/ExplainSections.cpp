#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/ErrorCollector.h"
#include "Check/Explain.h"
#include "Check/Explanations.h"
#include "Reader/Sections.h"

// The order of sections, what a model must have, IDs that are used twice or not defined.

namespace orvalo {

namespace {

using M = ReaderMessages;

const Section& SectionOf(SectionOrder order) {
    return *std::find_if(std::begin(sections), std::end(sections),
                         [&](const Section& section) { return section.order == order; });
}

/// The section that an error about the order of sections asks for.
SectionOrder OrderOf(int code) {
    return static_cast<SectionOrder>((code - M::AnalysisNotDefinedFirst.code) / 3);
}

const SectionRecord* First(const ReadingRecord& record, std::string_view word) {
    for (const SectionRecord& section : record.sections) {
        if (section.section->word == word) return &section;
    }
    return nullptr;
}

void TellSection(Diagnostic& diagnostic, ErrorCollector& errors, const SectionRecord& section, std::string note) {
    AddNote(diagnostic, std::move(note), errors.record.PlaceOf(section.place), section.section->word.size());
}

/// The number of an ID that is used twice and what it is called: a table within a patch has one too.
const PropertyRecord* CurrentID(const ErrorCollector& errors) {
    const SectionRecord& section = *errors.CurrentSection();
    const bool nested = !errors.OpenProperties().empty() && errors.OpenProperties().back().word == "table";
    for (auto property = section.properties.rbegin(); property != section.properties.rend(); ++property) {
        if (property->word == "id" && property->nested == nested) return &*property;
    }
    return nullptr;
}

std::string IDsOf(const ReadingRecord& record, std::string_view word) {
    std::string ids;
    for (const SectionRecord& section : record.sections) {
        const PropertyRecord* const id = section.section->word == word ? section.Find("id") : nullptr;
        if (id != nullptr) ids += (ids.empty() ? "" : ", ") + Shown(id->value);
    }
    return ids;
}

/// Where in the record a section that was needed stands after all.
void TellLateSection(Diagnostic& diagnostic, ErrorCollector& errors) {
    const Section& needed = SectionOf(OrderOf(diagnostic.code));
    const SectionRecord* const found = First(errors.record, needed.word);
    if (found == nullptr) return;
    TellSection(diagnostic, errors, *found, std::string(needed.name) + " stands here: it is to be moved.");
}

}  // namespace

void ExplainOrder(Diagnostic& diagnostic, ErrorCollector& errors) {
    const Section& needed = SectionOf(OrderOf(diagnostic.code));
    std::string order;
    for (const SectionOrder leading : {SectionOrder::Analysis, SectionOrder::Materials, SectionOrder::Cubes}) {
        order += (order.empty() ? "" : ", ") + std::string(SectionOf(leading).name);
    }
    diagnostic.expected.emplace_back(needed.word);
    AddNote(diagnostic, "A model begins with " + order + ", in this order. " + needed.name + " is due here.");
    if (errors.CurrentSection() == nullptr && !errors.record.sections.empty()) {
        const SectionRecord& last = errors.record.sections.back();
        AddNote(diagnostic, std::string("The last section is ") + last.section->name + '.',
                errors.record.PlaceOf(last.place), last.section->word.size());
    }
}

void ExplainSecondSection(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const first = First(errors.record, errors.CurrentSection()->section->word);
    if (first == nullptr || first == errors.CurrentSection()) return;
    TellSection(diagnostic, errors, *first,
                std::string("A model has one ") + first->section->name + ", which begins here.");
}

void ExplainNeededSection(Diagnostic& diagnostic, ErrorCollector& errors) {
    const bool output = diagnostic.code == M::SensorDumpNotDefined.code;
    for (const SectionRecord& section : errors.record.sections) {
        const std::string_view word = section.section->word;
        if (output ? word != "sensor" && word != "dump" : word != "actuator" && word != "piezo") continue;
        const PropertyRecord* const enabled = section.Find("enabled");
        if (enabled == nullptr || enabled->value >= 1.0) continue;
        const InputPlace place = errors.record.PlaceOf(enabled->valuePlace);
        AddNote(diagnostic, std::string("This ") + section.section->name + " is switched off.", place, 1);
        diagnostic.fixes.push_back({place, errors.Source().TokenAt(place).size(), "1"});
    }
    AddNote(diagnostic, output
                            ? "Nothing is recorded. Add, for example: SENSOR id 1 shape point position 1 1 1 output U "
                              "filename \"u.txt\" END"
                            : "Nothing excites the model. Add an ACTUATOR, driven by a waveform or a table, or a "
                              "PIEZO.");
}

void ExplainReusedID(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord& current = *errors.CurrentSection();
    const PropertyRecord* const id = CurrentID(errors);
    if (diagnostic.code == M::PiezoIDReused.code) {
        const SectionRecord* const first = First(errors.record, current.section->word);
        if (first != nullptr)
            TellSection(diagnostic, errors, *first, "A model has one PIEZO at most, which begins here.");
        return;
    }
    if (id == nullptr) return;
    const InputPlace place = errors.record.PlaceOf(id->valuePlace);
    const InputPlace firstPlace = [&] {
        for (const SectionRecord& section : errors.record.sections) {
            for (const PropertyRecord& other : section.properties) {
                const bool same =
                    section.section == current.section && other.word == "id" && other.nested == id->nested;
                if (same && other.value == id->value && &other != id) return errors.record.PlaceOf(other.valuePlace);
            }
        }
        return InputPlace();
    }();
    const std::size_t length = errors.Source().TokenAt(place).size();
    if (!firstPlace.path.empty()) AddNote(diagnostic, "The ID was first given here,", firstPlace, length);
    AddNote(diagnostic, firstPlace.path.empty() ? "The ID is given here." : "and again here.", place, length);
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    errors.PostponeFreeNumber({0, {place, length, ""}, current.section->word, id->word, id->nested, largest});
}

void ExplainUndefinedTable(Diagnostic& diagnostic, ErrorCollector& errors) {
    const double id = errors.Core().subject;
    constexpr int maxUses = 3;
    int uses = 0;
    const std::string tables = IDsOf(errors.record, "table");
    for (const SectionRecord& section : errors.record.sections) {
        const PropertyRecord* const table = section.section->word == "actuator" ? section.Find("table") : nullptr;
        if (table == nullptr || table->value != id || ++uses > maxUses) continue;
        const InputPlace place = errors.record.PlaceOf(table->valuePlace);
        const std::size_t length = errors.Source().TokenAt(place).size();
        AddNote(diagnostic, "Table " + Shown(id) + " is used here.", place, length);
        if (!tables.empty() && tables.find(',') == std::string::npos) {
            diagnostic.fixes.push_back({place, length, tables});
        }
    }
    AddNote(diagnostic, tables.empty() ? "The model has no TABLE." : "Defined tables: " + tables + '.');
}

void ExplainAtEnd(ErrorCollector& errors) {
    for (PlacedDiagnostic& placed : errors.diagnostics) {
        const int code = placed.diagnostic.code;
        if (code == M::AnalysisNotDefinedFirst.code || code == M::MaterialsSectionExpected.code ||
            code == M::CubesSectionExpected.code) {
            TellLateSection(placed.diagnostic, errors);
        }
    }
    for (const PostponedFix& postponed : errors.Postponed()) {
        double largest = 0.0;
        for (const SectionRecord& section : errors.record.sections) {
            if (section.section->word != postponed.section) continue;
            for (const PropertyRecord& property : section.properties) {
                if (property.word != postponed.property || property.nested != postponed.nested) continue;
                largest = std::max(largest, property.value);
            }
        }
        if (largest >= postponed.most) continue;
        Fix fix = postponed.fix;
        fix.replacement = Shown(largest + 1.0);
        errors.diagnostics[postponed.diagnostic].diagnostic.fixes.push_back(std::move(fix));
    }
}

}  // namespace orvalo
