#include "Export.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include <Orvalo3DReader/Write/ResultsView.h>
#include <Orvalo3DReader/Write/WriteModel.h>
#include <Orvalo3DReader/Write/WriteOptions.h>
#include <Orvalo3DReader/Write/WriteResultsMat.h>
#include <Orvalo3DReader/Write/WriteResultsTxt.h>

#include "PathText.h"
#include "export/CellData.h"
#include "export/ModelJson.h"
#include "export/NumpyFile.h"
#include "export/OutputFile.h"
#include "export/TextRows.h"
#include "export/VtkCells.h"
#include "export/VtkImage.h"
#include "export/VtkPoints.h"

namespace {

using ModelExport = void (*)(const orvalo::Model&, const std::string&, const ExportOptions&, ExportProgress&);
using ResultsExport = void (*)(const ResultsSelection&, const std::string&, const ExportOptions&, ExportProgress&);
using CellExport = void (*)(const CellData&, const std::string&, const ExportOptions&, ExportProgress&);

template <CellExport write>
void ExportCells(const orvalo::Model& model, const std::string& path, const ExportOptions& options,
                 ExportProgress& progress) {
    write(CellDataOf(model), path, options, progress);
}

void RequireCells(const ResultsSelection& selection, const std::string& path) {
    if (!selection.Table().HasCells()) throw OutputError(path + ": error: The results have no coordinates.");
    if (selection.Rows() == 0) throw OutputError(path + ": error: There are no rows to show.");
}

template <CellExport write>
void ExportCells(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
                 ExportProgress& progress) {
    RequireCells(selection, path);
    write(CellDataOf(selection, options.cellSize), path, options, progress);
}

void ExportPoints(const orvalo::Model& model, const std::string& path, const ExportOptions& options, ExportProgress&) {
    WriteVtkPoints(model, path, options);
}

void ExportPoints(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
                  ExportProgress&) {
    RequireCells(selection, path);
    WriteVtkPoints(selection, path, options);
}

void ExportCsv(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
               ExportProgress& progress) {
    progress.total = selection.Rows();
    OutputFile out(path, options.overwrite);
    WriteTextRows(
        selection, TextForm::csv, [&](std::string_view text) { out.Write(text); }, progress.done);
    out.Commit();
}

void ExportJson(const orvalo::Model& model, const std::string& path, const ExportOptions& options, ExportProgress&) {
    WriteModelJson(model, path, options);
}

orvalo::WriteOptions WriteOptionsOf(const ExportOptions& options, ExportProgress& progress) {
    orvalo::WriteOptions writing;
    writing.overwrite = options.overwrite;
    writing.percentWritten = &progress.percent;
    return writing;
}

void ExportModel(const orvalo::Model& model, const std::string& path, const ExportOptions& options,
                 ExportProgress& progress) {
    orvalo::WriteModel(model, path, WriteOptionsOf(options, progress));
}

/// Columns of a selection one after the other in memory, as the library takes them.
class GatheredRows {
public:
    explicit GatheredRows(const ResultsSelection& selection) {
        view_.rows = selection.Rows();
        view_.indexNames = selection.IndexNames();
        indices_.resize(selection.Indices());
        for (std::size_t column = 0; column < indices_.size(); ++column) {
            for (std::size_t row = 0; row < view_.rows; ++row) {
                indices_[column].push_back(static_cast<short>(selection.Index(column, row)));
            }
            view_.indices.emplace_back(indices_[column].data());
        }
        values_.resize(selection.Columns());
        for (std::size_t column = 0; column < values_.size(); ++column) {
            for (std::size_t row = 0; row < view_.rows; ++row) values_[column].push_back(selection.Value(column, row));
            view_.values.emplace_back(values_[column].data());
            view_.valueNames.push_back(selection.ColumnName(column));
        }
    }

    const orvalo::ResultsView& View() const { return view_; }

private:
    std::vector<std::vector<short>> indices_;
    std::vector<std::vector<double>> values_;
    orvalo::ResultsView view_;
};

template <class Write>
void ExportRows(const ResultsSelection& selection, const Write& write) {
    if (selection.Whole()) {
        write(selection.Table().Source());
    } else {
        write(GatheredRows(selection).View());
    }
}

void ExportTxt(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
               ExportProgress& progress) {
    ExportRows(selection,
               [&](const auto& rows) { orvalo::WriteResultsTxt(rows, path, WriteOptionsOf(options, progress)); });
}

void ExportMat(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
               ExportProgress& progress) {
    ExportRows(selection,
               [&](const auto& rows) { orvalo::WriteResultsMat(rows, path, WriteOptionsOf(options, progress)); });
}

/// A form of files; null where it cannot hold the kind.
struct Form {
    const char* extension;
    ModelExport model;
    ResultsExport results;
};

constexpr Form forms[] = {
    {".vti", ExportCells<WriteVtkImage>, ExportCells<WriteVtkImage>},
    {".pvti", ExportCells<WriteVtkPieces>, ExportCells<WriteVtkPieces>},
    {".vtu", ExportCells<WriteVtkCells>, ExportCells<WriteVtkCells>},
    {".vtp", ExportPoints, ExportPoints},
    {".txt", nullptr, ExportTxt},
    {".mat", nullptr, ExportMat},
    {".csv", nullptr, ExportCsv},
    {".npy", nullptr, WriteNpy},
    {".npz", nullptr, WriteNpz},
    {".json", ExportJson, nullptr},
    {".model", ExportModel, nullptr},
};

bool Holds(const Form& form, FileKind kind) {
    return kind == FileKind::model ? form.model != nullptr : form.results != nullptr;
}

const Form* FormOf(const std::string& path) {
    std::string extension = TextOf(PathOf(path).extension());
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const auto* found =
        std::find_if(std::begin(forms), std::end(forms), [&](const Form& f) { return f.extension == extension; });
    return found == std::end(forms) ? nullptr : found;
}

}  // namespace

std::string ExportedExtensions(FileKind kind) {
    std::vector<std::string> extensions;
    for (const Form& form : forms) {
        if (Holds(form, kind)) extensions.emplace_back(form.extension);
    }
    return fmt::format("{}", fmt::join(extensions, ", "));
}

std::optional<std::string> WhyNotExported(FileKind kind, const std::string& path) {
    const Form* form = FormOf(path);
    if (form != nullptr && Holds(*form, kind)) return std::nullopt;
    return fmt::format("{}: error: {} can be written as {}.", path, kind == FileKind::model ? "A model" : "Results",
                       ExportedExtensions(kind));
}

void Export(const orvalo::Model& model, const std::string& path, const ExportOptions& options,
            ExportProgress& progress) {
    FormOf(path)->model(model, path, options, progress);
}

void Export(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
            ExportProgress& progress) {
    FormOf(path)->results(selection, path, options, progress);
}
