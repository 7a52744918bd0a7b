#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Write/WriteModel.h>

#include "Common/Bytes.h"
#include "Common/StopFlag.h"
#include "Common/WithinMemory.h"
#include "Write/OutputFile.h"
#include "Write/Progress.h"
#include "Write/SectionWriters.h"

namespace orvalo {

namespace {

constexpr Subject included{"The file for cubes", -1};

std::string Folded(std::string name) {
    for (char& c : name) c = ToLower(c);
    return name;
}

/// Refuses a name that the model could not include.
void CheckIncluded(const std::string& path, const std::string& name) {
    CheckName(included, "name", name);
    if (name.size() < 2 || name == "..") Refuse(included, ": no file of the name '", name, "' can be included");
    if (Folded(path.substr(path.find_last_of(platform::separators) + 1)) == name)
        Refuse(included, " has the name of the model, '", name, "'");
}

void CheckOptions(const std::string& path, const WriteOptions& options) {
    if (options.comment.find('\0') != std::string::npos) Refuse("The comment has a NUL, which would end the file");
    if (!options.cubesFile.empty()) CheckIncluded(path, options.cubesFile);
}

GridRows CheckModelToWrite(const Model& model, StopFlag stop) {
    CheckAnalysis(model);
    CheckMaterials(model.materials);
    CheckActuators(model);
    CheckPiezos(model, stop);
    CheckOutputs(model);
    CheckTables("Table", model.tables, stop);
    CheckSets(model, stop);
    return CheckGrid(model, stop);
}

/// Each line after the sign of a comment, whatever ends the lines.
void WriteComment(std::string_view comment, TextWriter& out) {
    while (!comment.empty()) {
        const std::size_t end = comment.find_first_of("\r\n");
        const std::string_view line = comment.substr(0, end);
        out.Text(line.empty() ? ";" : "; ");
        out.Text(line);
        out.Text("\n");
        const std::size_t length = end != std::string_view::npos && comment.substr(end, 2) == "\r\n" ? 2 : 1;
        comment.remove_prefix(end == std::string_view::npos ? comment.size() : end + length);
    }
}

/// One write: the checked model, and what all of its files share.
class ModelWriter {
public:
    ModelWriter(const Model& model, const std::string& path, const WriteOptions& options, StopFlag stop)
        : model_(model),
          path_(path),
          options_(options),
          stop_(stop),
          rows_(CheckModelToWrite(model, stop)),
          progress_(options.percentWritten, CountUnits(model, rows_)) {}

    void Write() {
        std::optional<OutputFile> grid;
        OutputFile main(path_, options_.overwrite);
        if (!options_.cubesFile.empty()) {
            grid.emplace(path_.substr(0, path_.find_last_of(platform::separators) + 1) + options_.cubesFile,
                         options_.overwrite);
            TextWriter out(*grid, progress_, stop_);
            SectionText text(out);
            WriteGrid(model_, rows_, text);
            out.Flush();
            grid->Finish();
        }
        WriteMain(main);
        main.Finish();
        stop_.Check();
        if (grid) grid->MoveIntoPlaceForNow();
        main.MoveIntoPlace();
        if (grid) grid->Keep();
        progress_.Complete();
    }

private:
    void WriteMain(OutputFile& file) {
        TextWriter out(file, progress_, stop_);
        SectionText text(out);
        WriteComment(options_.comment, out);
        WriteAnalysis(model_, text);
        WriteMaterials(model_.materials, text);
        if (options_.cubesFile.empty()) {
            WriteGrid(model_, rows_, text);
        } else {
            out.Text("\ninclude \"" + options_.cubesFile + "\"\n");
        }
        WriteActuators(model_, text);
        WriteTables(model_, text);
        WritePiezos(model_, text);
        WriteOutputs(model_, text);
        WriteSets(model_, text);
        out.Flush();
    }

    const Model& model_;
    const std::string& path_;
    const WriteOptions& options_;
    const StopFlag stop_;
    const GridRows rows_;
    Progress progress_;
};

}  // namespace

std::uint64_t CountUnits(const Model& model, const GridRows& rows) {
    std::uint64_t units = rows.cubes + rows.dampingCubes;
    for (const auto& [id, table] : model.tables) units += id < 0 ? 0 : table->count;
    for (const auto& piezo : model.piezos) units += piezo->samplesCount * piezo->tables.size();
    for (const auto& entry : model.sets) units += entry.second->count;
    return units;
}

void WriteModel(const Model& model, const std::string& path, const WriteOptions& options) {
    WithinMemory(module::WriteModel, __LINE__, [&] {
        const StopFlag stop(options.stop, "Writing was stopped.");
        stop.Check();
        CheckOptions(path, options);
        ModelWriter(model, path, options, stop).Write();
    });
}

}  // namespace orvalo
