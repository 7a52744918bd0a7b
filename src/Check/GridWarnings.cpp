#include <limits>
#include <memory>

#include "Check/Warnings.h"

namespace orvalo {

namespace {

/// The count that the last rows of a section were read with.
const PropertyRecord* CountOf(const SectionRecord& section) {
    const PropertyRecord* count = nullptr;
    const PropertyRecord* last = nullptr;
    for (const PropertyRecord& property : section.properties) {
        if (property.word == "count") last = &property;
        if (property.word == "data") count = last;
    }
    return count;
}

void WarnOfShortList(Warnings& warnings, const SectionRecord& section, std::uint64_t declared, const char* what) {
    const PropertyRecord* const count = CountOf(section);
    if (section.rowsRead >= declared || count == nullptr) return;
    const std::string read = std::to_string(section.rowsRead);
    const std::string lacking = section.rowsRead > 0 ? "rows for " + read + ": the others" : "no rows: all";
    Diagnostic& added = warnings.AddAt("cells-without-row", count->valuePlace,
                                       std::string(section.section->name) + " declares " + std::to_string(declared) +
                                           ' ' + what + ", but has " + lacking + " are left at 0 0 0.");
    if (section.rowsRead > 0) added.fixes.push_back({added.place, added.length, read});
    if (const PropertyRecord* const data = section.Find("data")) {
        warnings.AddNote(added, "The rows end here.", data->endPlace);
    }
}

void WarnOfRepeated(Warnings& warnings, const GridPart& part, bool endsWithNumber) {
    const std::uint64_t told = warnings.options.perSection;
    const std::uint64_t asked = told + (told < std::numeric_limits<std::uint64_t>::max() ? 1 : 0);
    const RepeatedCells repeated = FindRepeated(part.cells.list, part.cells.survey, asked);
    RowWarnings rows(warnings, "duplicate-cell", *part.section, endsWithNumber);
    for (const RepeatedCell& cell : repeated.cells) {
        const std::string first = std::to_string(cell.first + 1);
        Diagnostic* const added = rows.Add(cell.row, [&] {
            return "The cell " + Shown(PointOf(cell.cell)) + " is given twice: row " + first + " has it already.";
        });
        if (added == nullptr) continue;
        const RowPlace place = warnings.rows.Find(*part.section, endsWithNumber, cell.first);
        added->notes.push_back({"This is row " + first + '.', warnings.Record().PlaceOf(place.place), place.length});
    }
    rows.End(repeated.count);
}

}  // namespace

void WarnOfRows(Warnings& warnings) {
    const Cubes& cubes = warnings.model.cubes;
    for (const GridPart& part : warnings.grid) {
        if (part.section->failed) continue;
        const bool isGrid = part.section->section->word == "cubes";
        WarnOfShortList(warnings, *part.section, isGrid ? cubes.CubesCount() : cubes.DampingCubesCount(), "cells");
        WarnOfRepeated(warnings, part, !isGrid || cubes.TemperaturesPtr() != nullptr);
    }
    for (const SectionRecord* const section : warnings.Sections("set")) {
        const auto set = warnings.model.sets.find(IdOf(*section));
        if (set == warnings.model.sets.end()) continue;
        if (section->rowsRead == 0) {
            warnings.AddAt("empty-set", *section,
                           "The set has no points, though it declares " + std::to_string(set->second->count) + '.');
        } else {
            WarnOfShortList(warnings, *section, set->second->count, "points");
        }
    }
}

}  // namespace orvalo
