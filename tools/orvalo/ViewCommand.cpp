#include "ViewCommand.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "PathText.h"
#include "ProgressBar.h"
#include "export/OutputFile.h"
#include "view/PageBlocks.h"
#include "view/PageFile.h"
#include "view/PageText.h"

namespace {

using Json = nlohmann::ordered_json;

struct ViewArguments {
    std::vector<std::string> names;
    std::string target;
    /// In millions of bytes.
    double room = 11.5;
    bool overwrite = false;
    std::optional<FileKind> kind;
    unsigned threads = 0;
    ColourMode colour = ColourMode::automatic;
};

/// A model with errors may have cells all the same.
bool ReadCellsAlone(InputFile& file, const std::string& name, const ViewArguments& arguments) {
    if (file.Good() || file.checked.kind != FileKind::model || name == "-") return false;
    file.model = ReadInputFile(name, {arguments.kind, true, false, arguments.threads}).model;
    return file.model != nullptr;
}

/// No text of a file may end the element that it stands in.
std::string ScriptText(const Json& document) {
    std::string text = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at))
        text.replace(at, 1, "\\u003c");
    return text;
}

void WritePage(const Json& facts, const PageBlocks& blocks, OutputFile& out) {
    std::string_view page = PageText();
    const auto writeUpTo = [&](std::string_view place) {
        const std::size_t at = page.find(place);
        out.Write(page.substr(0, at));
        page.remove_prefix(at + place.size());
    };
    writeUpTo("@FACTS@");
    out.Write(ScriptText(facts));
    writeUpTo("@BLOCKS@");
    for (std::size_t i = 0; i < blocks.All().size(); ++i) {
        out.Write(fmt::format("<script type=\"text/plain\" id=\"block-{}\">", i));
        out.Write(blocks.All()[i]);
        out.Write("</script>\n");
    }
    out.Write(page);
    out.Commit();
}

/// Adds a file to the page, unless it cannot be opened, which is told on standard error.
ExitStatus AddFile(const std::string& name, const ViewArguments& arguments, Json& files, PageBlocks& blocks) {
    InputFile file = ReadInputFile(name, {arguments.kind, false, true, arguments.threads});
    const ExitStatus status = file.Status();
    if (!file.Good()) {
        PrintDiagnostics(file.checked.input, file.checked.diagnostics, TextStyle(stderr, arguments.colour));
        if (status == ExitStatus::unreadableFile) return status;
    }
    const bool cubesOnly = ReadCellsAlone(file, name, arguments);
    const std::size_t room =
        static_cast<std::size_t>(arguments.room * 1e6 / static_cast<double>(arguments.names.size()));
    const ProgressBar bar(file.checked.input.Name(), [] { return ProgressBar::State{}; });
    files.push_back(PageFile(file, cubesOnly, blocks, blocks.Size() + room));
    return status;
}

ExitStatus Run(const ViewArguments& arguments) {
    const std::string& first = arguments.names.front();
    const std::string stem = first == "-" ? "stdin" : TextOf(PathOf(first).stem());
    const std::string target = arguments.target.empty() ? stem + ".html" : arguments.target;
    try {
        // First, so that no time is spent for nothing.
        OutputFile out(target, arguments.overwrite);
        Json files = Json::array();
        PageBlocks blocks;
        ExitStatus worst = ExitStatus::good;
        for (const std::string& name : arguments.names)
            worst = std::max(worst, AddFile(name, arguments, files, blocks));
        if (files.empty()) return worst;
        WritePage({{"files", files}}, blocks, out);
        fmt::print("{}\n", Harmless(target));
        return worst;
    } catch (const OutputError& error) {
        fmt::print(stderr, "{}\n", Harmless(error.what()));
        return ExitStatus::unreadableFile;
    }
}

}  // namespace

void AddViewCommand(CLI::App& app, ExitStatus& status) {
    auto arguments = std::make_shared<ViewArguments>();
    CLI::App* command = app.add_subcommand("view", "Write a page that shows models and results in a browser");
    command->add_option("FILE", arguments->names, "Models and results; - reads standard input")->required();
    command->add_option("-o,--output", arguments->target, "Where to write the page; FILE.html, here, if not given")
        ->option_text("PAGE");
    command->add_flag("--force", arguments->overwrite, "Replace the page if it exists");
    command->add_option("--max-size", arguments->room, "Megabytes for the data: values are rounded to fit (11.5)")
        ->check(CLI::Range(0.1, 2000.0))
        ->option_text("MB");
    AddKindOption(*command, arguments->kind);
    AddThreadsOption(*command, arguments->threads);
    AddColourOption(*command, arguments->colour);
    command->footer(
        "The page is one file, needs no network and opens from disk. Of a model with errors it shows the cells, if "
        "they\n"
        "can be read, and what is wrong. docs/view.md tells how to use it.");
    command->callback([arguments, &status] { status = Run(*arguments); });
}
