#include "PageFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "ModelSummary.h"
#include "ResultsSummary.h"
#include "export/CellData.h"
#include "export/SortedCells.h"
#include "results/ResultsSelection.h"
#include "results/ResultsTable.h"
#include "view/CellBlocks.h"
#include "view/DiagnosticCell.h"
#include "view/FieldBlock.h"
#include "view/ModelObjects.h"

namespace {

using Json = nlohmann::ordered_json;

Json CellJson(const orvalo::Point& cell) {
    return {cell.x, cell.y, cell.z};
}

/// The cells of a file for the page.
class CellFacts {
public:
    CellFacts(const CellData& data, PageBlocks& blocks, std::size_t room)
        : data_(data), cells_(data), blocks_(blocks), room_(room) {}

    void AddTo(Json& entry, const orvalo::MaterialRepository* materials) {
        const GridRegion box(data_.box);
        entry["box"] = {{"first", CellJson(box.first)}, {"size", {box.sizeX, box.sizeY, box.sizeZ}}};
        entry["cells"] = cells_.Count();
        AddKinds(entry, materials);
        entry["runs"] = blocks_.Add(EncodeRuns(cells_, box, [&](std::size_t i) { return codes_[i]; }));
        AddFields(entry);
        std::string rows = PackBytes(EncodeRows(cells_));
        const bool fits = blocks_.Size() + rows.size() <= room_;
        entry["rows"] = fits ? Json(blocks_.AddPacked(std::move(rows))) : Json(nullptr);
    }

private:
    /// Of cells that are coloured and hidden together: twice the material, one more for cells of damping alone.
    unsigned short KindOf(std::size_t i) const {
        const CellField& first = data_.fields.front();
        if (first.name != "material") return 0;
        const double exists = cells_[i].Value(data_.fields[1]).value_or(0);
        return static_cast<unsigned short>(2 * cells_[i].Value(first).value_or(0) + (exists > 1 ? 1 : 0));
    }

    void AddKinds(Json& entry, const orvalo::MaterialRepository* materials) {
        codes_.resize(cells_.Count());
        std::array<std::size_t, 512> counts{};
        for (std::size_t i = 0; i < cells_.Count(); ++i) {
            codes_[i] = KindOf(i);
            ++counts[codes_[i]];
        }
        std::map<int, std::size_t> colours;
        Json list = Json::array();
        std::array<unsigned short, counts.size()> codes{};
        for (std::size_t kind = 0; kind < counts.size(); ++kind) {
            if (counts[kind] == 0) continue;
            codes[kind] = static_cast<unsigned short>(list.size());
            const int material = static_cast<int>(kind / 2);
            const std::size_t colour = colours.try_emplace(material, colours.size()).first->second;
            Json one = {{"number", material},
                        {"name", ""},
                        {"count", counts[kind]},
                        {"damping", kind % 2 == 1},
                        {"colour", colour}};
            if (data_.fields.front().name != "material") {
                one["number"] = nullptr;
                one["name"] = "cubes with a row";
            } else if (materials != nullptr) {
                one["name"] = (*materials)[materials->File2Vec(material)].name;
            }
            list.push_back(one);
        }
        for (unsigned short& code : codes_) code = codes[code];
        entry["materials"] = list;
    }

    /// Values are rounded to as many steps as fit.
    void AddFields(Json& entry) {
        std::vector<std::pair<const CellField*, FieldBlock>> made;
        for (const std::size_t steps : {65532U, 4092U, 252U, 60U, 12U}) {
            made.clear();
            for (const CellField& field : data_.fields) {
                if (field.type == NumberType::float64) made.emplace_back(&field, MakeFieldBlock(cells_, field, steps));
            }
            const std::size_t size =
                std::accumulate(made.begin(), made.end(), blocks_.Size(),
                                [](std::size_t sum, const auto& one) { return sum + one.second.Size(); });
            if (size <= room_) break;
        }
        entry["fields"] = Json::array();
        const bool ofModel = data_.fields.front().name == "material";
        for (auto& [field, block] : made) entry["fields"].push_back(FieldJson(*field, block, ofModel));
    }

    Json FieldJson(const CellField& field, FieldBlock& block, bool ofModel) {
        const auto cell = [&](const std::optional<std::size_t>& i) {
            return i ? CellJson(cells_[*i].cell) : Json(nullptr);
        };
        Json values = nullptr;
        if (!block.values.empty()) values = blocks_.AddPacked(std::move(block.values));
        return {{"name", field.name},
                {"kind", ofModel ? "sequential" : "diverging"},
                {"bits", block.bits},
                {"steps", block.steps},
                {"min", block.least},
                {"max", block.greatest},
                {"minCell", cell(block.leastCell)},
                {"maxCell", cell(block.greatestCell)},
                {"levels", blocks_.AddPacked(std::move(block.levels))},
                {"values", values}};
    }

    const CellData& data_;
    SortedCells cells_;
    PageBlocks& blocks_;
    std::size_t room_;
    std::vector<unsigned short> codes_;
};

Json DiagnosticsOf(const InputFile& file) {
    Json list = Json::array();
    for (const orvalo::Diagnostic& found : file.checked.diagnostics) {
        const auto cell = file.checked.kind == FileKind::model ? CellOf(found) : std::nullopt;
        const std::string place = found.place.Known()
                                      ? fmt::format("{}:{}:{}", file.checked.input.Shown(found.place.path),
                                                    found.place.line, found.place.column)
                                      : "";
        list.push_back({{"severity", found.severity == orvalo::Severity::Error ? "error" : "warning"},
                        {"message", file.checked.input.ShownMessage(found.message)},
                        {"rule", found.rule},
                        {"place", place},
                        {"cell", cell ? CellJson(*cell) : Json(nullptr)}});
    }
    return list;
}

void AddModel(Json& entry, const orvalo::Model& model, bool cubesOnly, PageBlocks& blocks, std::size_t room) {
    entry["summary"] = ToText(model, Summarize(model, cubesOnly));
    if (!cubesOnly) {
        entry["cellSize"] = model.cellSize;
        entry["marks"] = PageMarks(model);
        entry["objects"] = PageObjects(model);
        entry["sets"] = PageSets(model, blocks);
        entry["signals"] = PageSignals(model, blocks);
    }
    if (model.bounds.defined) {
        CellFacts(CellDataOf(model, cubesOnly), blocks, room).AddTo(entry, cubesOnly ? nullptr : &model.materials);
    }
}

void AddResults(Json& entry, const orvalo::Results& results, PageBlocks& blocks, std::size_t room) {
    entry["summary"] = ToText(Summarize(results));
    const ResultsTable table(results);
    if (!table.HasCells() || table.Rows() == 0) {
        entry["note"] = "The results have no coordinates, so there is nothing to show in space.";
        return;
    }
    std::vector<unsigned int> columns(table.Columns());
    std::iota(columns.begin(), columns.end(), 0U);
    const ResultsSelection all(table, columns);
    CellFacts(CellDataOf(all, 1.0), blocks, room).AddTo(entry, nullptr);
}

/// Where to look first: at what excites the model, or where the first column is largest, or at any cell.
Json StartOf(const Json& entry) {
    for (const Json& mark : entry["marks"]) {
        if (mark["kind"] == "actuator") return mark["cell"];
    }
    if (entry["kind"] == "results" && !entry["fields"].empty()) {
        const Json& field = entry["fields"][0];
        const bool least = -field["min"].get<double>() > field["max"].get<double>();
        if (!field["maxCell"].is_null()) return field[least ? "minCell" : "maxCell"];
    }
    Json middle = entry["box"]["first"];
    for (std::size_t axis = 0; axis < 3; ++axis) {
        middle[axis] = middle[axis].get<int>() + entry["box"]["size"][axis].get<int>() / 2;
    }
    return middle;
}

}  // namespace

Json PageFile(const InputFile& file, bool cubesOnly, PageBlocks& blocks, std::size_t room) {
    Json entry = {{"name", file.checked.input.Name()},
                  {"kind", file.checked.kind == FileKind::model ? "model" : "results"},
                  {"summary", ""},
                  {"note", ""},
                  {"box", nullptr},
                  {"cellSize", nullptr},
                  {"materials", Json::array()},
                  {"fields", Json::array()},
                  {"marks", Json::array()},
                  {"objects", Json::array()},
                  {"sets", Json::array()},
                  {"signals", Json::array()},
                  {"diagnostics", DiagnosticsOf(file)}};
    if (file.model) AddModel(entry, *file.model, cubesOnly, blocks, room);
    if (file.results) AddResults(entry, *file.results, blocks, room);
    if (!file.Good()) entry["note"] = "The file has errors: see the diagnostics.";
    if (file.Good() && cubesOnly)
        entry["note"] = "The file has errors, so only its cells are shown, by the numbers of the file.";
    if (!entry["box"].is_null()) entry["start"] = StartOf(entry);
    return entry;
}
