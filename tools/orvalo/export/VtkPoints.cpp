#include "VtkPoints.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "ModelMarks.h"
#include "export/CellData.h"
#include "export/OutputFile.h"
#include "export/VtkFile.h"

namespace {

struct PointColumn {
    std::string name;
    std::function<double(std::size_t)> value;
};

/// Points with a vertex each; `texts` are arrays of text in XML.
void WritePoints(std::size_t count, const std::function<orvalo::Point(std::size_t)>& cell, double cellSize,
                 const std::vector<PointColumn>& columns, const std::string& texts, const std::string& path,
                 const ExportOptions& options) {
    OutputFile out(path, options.overwrite);
    VtkFile file(out, "PolyData", options.compress, options.threads);
    file.Xml(
        fmt::format("<PolyData>\n<Piece NumberOfPoints=\"{0}\" NumberOfVerts=\"{0}\" NumberOfLines=\"0\" "
                    "NumberOfStrips=\"0\" NumberOfPolys=\"0\">\n<Points>\n",
                    count));
    file.Declare("middles", NumberType::float64, 3);
    file.Xml("</Points>\n<Verts>\n");
    file.Declare("connectivity", NumberType::int64);
    file.Declare("offsets", NumberType::int64);
    file.Xml("</Verts>\n<PointData>\n");
    for (const PointColumn& column : columns) file.Declare(column.name, NumberType::float64);
    file.Xml(texts + "</PointData>\n</Piece>\n</PolyData>\n");
    file.Begin();
    const auto write = [&](std::uint64_t size, const auto& add) {
        file.BeginArray(size * count);
        for (std::size_t i = 0; i < count; ++i) add(i);
        file.EndArray();
    };
    write(3 * sizeof(double), [&](std::size_t i) {
        const orvalo::Point at = cell(i);
        const double middle[] = {(at.x + 0.5) * cellSize, (at.y + 0.5) * cellSize, (at.z + 0.5) * cellSize};
        file.Data(middle, sizeof middle);
    });
    for (const std::int64_t first : {0, 1}) {
        write(sizeof first, [&](std::size_t i) {
            const std::int64_t number = first + static_cast<std::int64_t>(i);
            file.Data(&number, sizeof number);
        });
    }
    for (const PointColumn& column : columns) {
        write(sizeof(double), [&](std::size_t i) {
            const double value = column.value(i);
            file.Data(&value, sizeof value);
        });
    }
    file.End();
    out.Commit();
}

}  // namespace

void WriteVtkPoints(const orvalo::Model& model, const std::string& path, const ExportOptions& options) {
    const std::vector<ModelMark> marks = MarksOf(model);
    // The codes of the characters, each text ended by a 0.
    std::string names =
        fmt::format("<DataArray type=\"String\" Name=\"name\" NumberOfTuples=\"{}\" format=\"ascii\">\n", marks.size());
    for (const ModelMark& mark : marks) {
        for (const char c : mark.name) names += fmt::format("{} ", static_cast<int>(static_cast<unsigned char>(c)));
        names += "0\n";
    }
    WritePoints(
        marks.size(), [&](std::size_t i) { return marks[i].cell; }, model.cellSize,
        {{"kind", [&](std::size_t i) { return static_cast<double>(marks[i].kind); }},
         {"id", [&](std::size_t i) { return static_cast<double>(marks[i].id); }}},
        names + "</DataArray>\n", path, options);
}

void WriteVtkPoints(const ResultsSelection& selection, const std::string& path, const ExportOptions& options) {
    std::vector<PointColumn> columns;
    const std::vector<std::string> names = selection.UniqueNames();
    columns.reserve(names.size());
    for (std::size_t column = 0; column < names.size(); ++column) {
        columns.push_back({names[column], [&selection, column](std::size_t i) { return selection.Value(column, i); }});
    }
    WritePoints(
        selection.Rows(), [&](std::size_t i) { return selection.Table().Cell(selection.Row(i)); }, options.cellSize,
        columns, "", path, options);
}
