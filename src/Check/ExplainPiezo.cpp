#include <cstdint>
#include <string>
#include <string_view>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/SourceTokens.h"

// The points of a patch, and the tables that drive them.

namespace orvalo {

namespace {

constexpr const char* pointNote =
    "A point is 'x y t U V W', with the IDs of three tables, or 'x y i' for one that is interpolated.";

/// Walks over the points of a patch as they stand in the file.
class PointWalk {
public:
    PointWalk(SourceText& source, const InputPlace& data) : tokens_(source, data) { tokens_.Next(); }

    /// Moves on to the next point; false after the last one, or where there is none.
    bool Next() {
        tables.clear();
        if (!tokens_.Next() || !tokens_.IsNumber()) return false;
        place = tokens_.Place();
        x = tokens_.text;
        if (!tokens_.Next() || !tokens_.IsNumber()) return false;
        y = tokens_.text;
        if (!tokens_.Next()) return false;
        if (tokens_.IsWord("i")) return true;
        for (int i = 0; i < 3; ++i) {
            if (!tokens_.Next() || !tokens_.IsNumber()) return false;
            tables.push_back({tokens_.text, tokens_.Place()});
        }
        return true;
    }
    bool Closed() const { return tokens_.IsWord("end"); }

    struct TableUse {
        std::string id;
        InputPlace place;
    };
    InputPlace place;
    std::string x;
    std::string y;
    std::vector<TableUse> tables;

private:
    SourceTokens tokens_;
};

void TellPointCount(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const count = errors.CurrentSection()->Find("count");
    if (count == nullptr || errors.OpenProperties().empty()) return;
    const InputPlace place = errors.record.PlaceOf(count->valuePlace);
    const std::size_t length = errors.Source().TokenAt(place).size();
    AddNote(diagnostic, "The count says " + Counted(static_cast<std::uint64_t>(count->Whole()), "point") + '.', place,
            length);
    PointWalk points(errors.Source(), errors.record.PlaceOf(errors.OpenProperties().back().place));
    std::uint64_t found = 0;
    InputPlace last;
    for (; points.Next(); last = points.place) ++found;
    if (!points.Closed() || found == 0) return;
    AddNote(diagnostic, Counted(found, "point") + " in all, of which the last one begins here.", last,
            errors.Source().TokenAt(last).size());
    diagnostic.fixes.push_back({place, length, std::to_string(found)});
}

}  // namespace

void ExplainPoint(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    if (ExplainMisspeltEnd(diagnostic, errors)) return;
    if (core.AtSection()) {
        const PropertyRecord& data = errors.OpenProperties().back();
        AddNote(diagnostic, "The points begin here and have no END.", errors.record.PlaceOf(data.place),
                data.word.size());
        return;
    }
    AddNote(diagnostic, pointNote);
    if (core.token.type == TokenType::Number && diagnostic.code != 129) {
        AddNote(diagnostic, "Its coordinates go from -32768 to 32767.");
    }
}

void ExplainPointReused(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (errors.OpenProperties().empty()) return;
    // The message names the point, which is the one that ends here.
    PointWalk points(errors.Source(), errors.record.PlaceOf(errors.OpenProperties().back().place));
    while (points.Next() && points.place.offset < diagnostic.place.offset) {
        if (diagnostic.message.find('(' + points.x + ',' + points.y + ')') == std::string::npos) continue;
        AddNote(diagnostic, "The point " + points.x + ' ' + points.y + " was defined here.", points.place,
                points.x.size());
        return;
    }
}

void ExplainPointCount(Diagnostic& diagnostic, ErrorCollector& errors) {
    TellPointCount(diagnostic, errors);
}

void ExplainSampleCounts(Diagnostic& diagnostic, ErrorCollector& errors) {
    for (const PropertyRecord& property : errors.CurrentSection()->properties) {
        if (!property.nested || property.word != "count" || property.Whole() < 1) continue;
        const InputPlace place = errors.record.PlaceOf(property.valuePlace);
        AddNote(diagnostic, "This table has " + Counted(static_cast<std::uint64_t>(property.Whole()), "sample") + '.',
                place, errors.Source().TokenAt(place).size());
    }
}

void ExplainPiezoTable(Diagnostic& diagnostic, ErrorCollector& errors) {
    const std::string id = std::to_string(errors.Core().subject);
    std::string own;
    for (const SectionRecord& section : errors.record.sections) {
        if (section.section->word != "piezo") continue;
        for (const PropertyRecord& property : section.properties) {
            if (property.nested && property.word == "id") own += (own.empty() ? "" : ", ") + Shown(property.value);
        }
        const PropertyRecord* const data = section.Find("data");
        if (data == nullptr) continue;
        PointWalk points(errors.Source(), errors.record.PlaceOf(data->place));
        bool told = false;
        while (!told && points.Next()) {
            for (const PointWalk::TableUse& use : points.tables) {
                if (use.id != id || told) continue;
                AddNote(diagnostic, "Table " + id + " is used here.", use.place, use.id.size());
                told = true;
            }
        }
    }
    AddNote(diagnostic, own.empty()
                            ? "The patch has no table: its tables are written inside PIEZO, as 'table id 1 count 2 "
                              "data 0 1 END END'."
                            : "Tables of the patch: " + own + '.');
    if (const SectionRecord* const outside = errors.FindSection("table", "id", errors.Core().subject)) {
        AddNote(diagnostic, "This TABLE is none of them: a patch finds only those inside its own section.",
                errors.record.PlaceOf(outside->place), outside->section->word.size());
    }
}

}  // namespace orvalo
