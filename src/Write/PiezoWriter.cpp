#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "Write/SectionWriters.h"

namespace orvalo {

namespace {

constexpr Subject patch{"The piezo patch", -1};

/// The table that a point means: of an ID it keeps the low 16 bits.
std::optional<int> TableOf(const Tables& tables, unsigned short kept) {
    constexpr int beyond = 65536;
    if (tables.count(kept) != 0 && kept != 0) return kept;
    for (const auto& entry : tables) {
        if (entry.first > 0 && entry.first % beyond == kept) return entry.first;
    }
    return std::nullopt;
}

bool IsInterpolated(const PiezoData::Cell& cell) {
    return cell.tableU == 0 && cell.tableV == 0 && cell.tableW == 0;
}

void CheckPoint(const PiezoData::Cell& cell, const Tables& tables) {
    if (IsInterpolated(cell)) return;
    for (const unsigned short id : {cell.tableU, cell.tableV, cell.tableW}) {
        if (!TableOf(tables, id))
            Refuse(patch, ": it has no table ", id, ", which its point ", cell.x, " ", cell.y, " names");
    }
}

void CheckPiezo(const Piezo& piezo, double timeStep, StopFlag stop) {
    const Point& axis = piezo.direction;
    CheckId({"Piezo patch", piezo.shared.id}, piezo.shared.id);
    const short numbers[] = {axis.x, axis.y, axis.z};
    const bool isUnit = std::count(std::begin(numbers), std::end(numbers), 1) == 1 &&
                        std::count(std::begin(numbers), std::end(numbers), 0) == 2;
    if (!isUnit) Refuse(patch, ": the direction ", axis.x, " ", axis.y, " ", axis.z, " is not that of an axis");
    CheckStart(patch, piezo.start, timeStep);
    CheckCode(patch, "method", excitationMethods, piezo.method);
    CheckNumber(patch, "amplitude", piezo.amplitude);
    if (piezo.data.Cells().empty()) Refuse(patch, " has no points");
    CheckTables("Table of the piezo patch", piezo.tables, stop);
    for (const auto& [id, table] : piezo.tables) {
        if (id < 0) Refuse(patch, ": the table ", id, " has no positive ID");
        if (table->count != piezo.tables.begin()->second->count) Refuse(patch, ": its tables have different lengths");
    }
    for (const auto& entry : piezo.data.Cells()) CheckPoint(*entry.second, piezo.tables);
}

void WritePoint(const PiezoData::Cell& cell, const Tables& tables, SectionText& text) {
    std::string line = std::to_string(cell.x) + ' ' + std::to_string(cell.y) + (IsInterpolated(cell) ? " i" : " t");
    if (!IsInterpolated(cell)) {
        for (const unsigned short id : {cell.tableU, cell.tableV, cell.tableW}) {
            line += ' ' + std::to_string(TableOf(tables, id).value_or(id));
        }
    }
    text.Line(line);
}

void WritePoints(const Piezo& piezo, SectionText& text) {
    const auto& cells = piezo.data.Cells();
    text.Count("count", cells.size());
    text.BeginBlock("data");
    for (const auto& entry : cells) WritePoint(*entry.second, piezo.tables, text);
    text.End();
    // A file may declare another number after the points, a program none.
    const std::size_t declared = piezo.data.Count();
    if (declared != 0 && declared != cells.size()) text.Count("count", declared);
}

}  // namespace

void CheckPiezos(const Model& model, StopFlag stop) {
    if (model.piezos.size() > 1) Refuse("The model has ", model.piezos.size(), " piezo patches, and may have one");
    for (const auto& piezo : model.piezos) {
        if (piezo == nullptr) Refuse(patch, " is missing");
        CheckPiezo(*piezo, model.timeStep, stop);
    }
}

void WritePiezos(const Model& model, SectionText& text) {
    for (const auto& piezo : model.piezos) {
        text.Begin(ReadPiezoSection);
        text.Property("id", piezo->shared.id);
        text.Property("position", piezo->shared.position);
        text.Property("direction", piezo->direction);
        text.Property("method", excitationMethods, piezo->method);
        WriteStart(piezo->start, model.timeStep, text);
        if (piezo->amplitude != 1.0) text.Property("amplitude", piezo->amplitude);
        WritePoints(*piezo, text);
        for (const auto& [id, table] : piezo->tables) {
            text.BeginBlock("table");
            WriteTable(id, *table, text);
            text.End();
        }
        text.End();
    }
}

}  // namespace orvalo
