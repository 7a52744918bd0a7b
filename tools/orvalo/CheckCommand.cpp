#include "CheckCommand.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <nlohmann/json.hpp>

#include "Diagnostic.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "InputFile.h"
#include "JsonText.h"

namespace {

struct CheckOptions {
    std::vector<std::string> paths;
    OutputFormat format = OutputFormat::text;
};

nlohmann::ordered_json ToJson(const InputFile& file) {
    nlohmann::ordered_json entry;
    entry["path"] = file.path;
    entry["kind"] = file.kind == FileKind::model ? "model" : "results";
    entry["ok"] = file.Good();
    entry["problems"] = ProblemsToJson(file);
    return entry;
}

ExitStatus Check(const CheckOptions& options) {
    ExitStatus worst = ExitStatus::good;
    auto document = nlohmann::ordered_json::array();
    for (const std::string& path : options.paths) {
        const InputFile file = ReadInputFile(path, false);
        worst = std::max(worst, file.Status());
        if (options.format == OutputFormat::json) {
            document.push_back(ToJson(file));
        } else {
            PrintProblems(file);
        }
    }
    if (options.format == OutputFormat::json) PrintJson(document);
    return worst;
}

}  // namespace

void AddCheckCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* command = app.add_subcommand("check", "Read files fully and print nothing but what is wrong with them");
    command->add_option("FILE", options->paths, "Model or results files, told apart by their content")->required();
    AddFormatOption(*command, options->format);
    command->footer(
        "Errors and warnings go to standard error as FILE:LINE:COLUMN: error: MESSAGE [CODE] and\n"
        "FILE: warning: MESSAGE. With --format=json they go to standard output instead, as an array with an object\n"
        "for each file: path, kind, ok, problems (severity, code, message, path, line, column, offset, row; null "
        "where\n"
        "there is none).");
    command->callback([options, &status] { status = Check(*options); });
}
