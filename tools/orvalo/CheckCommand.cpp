#include "CheckCommand.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Check/Rules.h>

#include "CheckedFile.h"
#include "CommonOptions.h"
#include "DiagnosticJson.h"
#include "DiagnosticText.h"
#include "ExitStatus.h"
#include "ExplainRule.h"
#include "FormatOption.h"
#include "HarmlessText.h"
#include "IncludedFiles.h"
#include "JsonText.h"
#include "NearestWord.h"
#include "PathText.h"
#include "SarifLog.h"
#include "TextStyle.h"
#include "Watch.h"

namespace fs = std::filesystem;

namespace {

struct CheckArguments {
    std::vector<std::string> names;
    std::vector<std::string> disabled;
    std::string explained;
    OutputFormat format = OutputFormat::text;
    ColourMode colour = ColourMode::automatic;
    CheckSettings settings;
    bool noWarnings = false;
    bool watch = false;
};

/// The models in a directory, by name; the directory itself where there are none.
std::vector<std::string> ModelsBelow(const std::string& directory) {
    std::vector<std::string> found;
    std::error_code unreadable;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator entry(PathOf(directory), options, unreadable), end;
         !unreadable && entry != end; entry.increment(unreadable)) {
        std::error_code unknown;
        if (entry->path().extension() == ".model" && entry->is_regular_file(unknown)) {
            found.push_back(TextOf(entry->path()));
        }
    }
    std::sort(found.begin(), found.end());
    return found.empty() ? std::vector<std::string>{directory} : found;
}

std::vector<std::string> Expand(const CheckArguments& arguments) {
    if (!arguments.settings.recursive) return arguments.names;
    std::vector<std::string> expanded;
    for (const std::string& name : arguments.names) {
        std::error_code unknown;
        const bool isDirectory = fs::is_directory(PathOf(name), unknown);
        const auto files = isDirectory ? ModelsBelow(name) : std::vector<std::string>{name};
        expanded.insert(expanded.end(), files.begin(), files.end());
    }
    return expanded;
}

/// Gathers what was found in all files and puts it out in the format that was asked for.
class Report {
public:
    explicit Report(const CheckArguments& arguments)
        : arguments_(arguments), style_(stderr, arguments.colour), json_(nlohmann::ordered_json::array()) {}

    void Add(const CheckedFile& file) {
        status = std::max(status, file.Status());
        errors_ += file.Errors();
        warnings_ += file.Warnings();
        ++files_;
        if (!file.diagnostics.empty()) ++filesWithProblems_;
        if (arguments_.format == OutputFormat::json) json_.push_back(ToJson(file));
        if (arguments_.format == OutputFormat::sarif) sarif_.Add(file);
        if (arguments_.format == OutputFormat::text) PrintDiagnostics(file.input, file.diagnostics, style_);
    }

    void Finish() const {
        if (arguments_.format == OutputFormat::json) PrintJson(json_);
        if (arguments_.format == OutputFormat::sarif) PrintJson(sarif_.Document());
        if (arguments_.format != OutputFormat::text) return;
        // Whoever watches wants to see that a file has become good; otherwise no news is good news.
        if (filesWithProblems_ == 0 && !arguments_.watch) return;
        fmt::print(stderr, "{}\n",
                   CountsText(errors_, warnings_, filesWithProblems_ > 0 ? filesWithProblems_ : files_));
    }

    ExitStatus status = ExitStatus::good;

private:
    const CheckArguments& arguments_;
    TextStyle style_;
    nlohmann::ordered_json json_;
    SarifLog sarif_;
    std::size_t errors_ = 0;
    std::size_t warnings_ = 0;
    std::size_t files_ = 0;
    std::size_t filesWithProblems_ = 0;
};

ExitStatus CheckOnce(const CheckArguments& arguments) {
    Report report(arguments);
    for (const std::string& name : Expand(arguments)) report.Add(CheckFile(name, arguments.settings));
    report.Finish();
    return report.status;
}

/// Checks for as long as the user lets it.
[[noreturn]] void CheckForever(const CheckArguments& arguments) {
    Watch watch([&] { return Expand(arguments); }, [](const std::string& path) { return WithIncludedFiles(path); });
    while (true) {
        CheckOnce(arguments);
        std::fflush(stdout);
        const std::string changed = watch.WaitForChange();
        fmt::print(stderr, "\n{} has changed.\n", Harmless(changed));
    }
}

/// Only warnings can be switched off: with an error less, a file would not be better.
std::string RefuseToDisable(const std::string& name) {
    const orvalo::Rule* rule = orvalo::FindRule(name.c_str());
    if (rule != nullptr) return rule->severity == orvalo::Severity::Warning ? "" : name + " is an error, no warning";
    const std::string nearest = NearestWord(name, RuleNames());
    return "there is no rule " + name + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

ExitStatus Run(CheckArguments& arguments) {
    const bool markdown = arguments.format == OutputFormat::markdown;
    if (!arguments.explained.empty()) {
        return PrintRules(arguments.explained, markdown, TextStyle(stdout, arguments.colour));
    }
    if (markdown) throw CLI::ValidationError("--format", "markdown is for --explain");
    if (arguments.names.empty()) throw CLI::RequiredError("FILE");
    arguments.settings.warnings = !arguments.noWarnings;
    arguments.settings.disabled.insert(arguments.disabled.begin(), arguments.disabled.end());
    if (!arguments.watch) return CheckOnce(arguments);
    const bool once = std::count(arguments.names.begin(), arguments.names.end(), "-") > 0;
    if (once) throw CLI::ValidationError("--watch", "standard input cannot be watched");
    CheckForever(arguments);
}

void AddOptions(CLI::App& command, CheckArguments& arguments) {
    command.add_option("FILE", arguments.names,
                       "Model or results files, told apart by their content; - reads standard input");
    command.add_flag("-r,--recursive", arguments.settings.recursive, "Of directories, check all *.model files in them");
    command.add_flag("--first", arguments.settings.firstOnly, "Stop at the first error of each file");
    command.add_flag("--no-warnings", arguments.noWarnings, "Show errors only");
    command
        .add_option_function<std::string>(
            "--warnings", [&arguments](const std::string&) { arguments.settings.warningsAreErrors = true; },
            "Take warnings for errors")
        ->check(CLI::IsMember({"error"}))
        ->option_text("error");
    command.add_option("--disable", arguments.disabled, "Do not warn by this rule; may be given several times")
        ->allow_extra_args(false)
        ->check(RefuseToDisable)
        ->option_text("RULE");
    AddFormatOption(command, arguments.format,
                    {{"text", OutputFormat::text},
                     {"json", OutputFormat::json},
                     {"sarif", OutputFormat::sarif},
                     {"markdown", OutputFormat::markdown}},
                    "text (for people), json (for scripts) or sarif (for code hosts and editors); markdown for "
                    "--explain");
    AddThreadsOption(command, arguments.settings.threads);
    AddKindOption(command, arguments.settings.kind);
    AddColourOption(command, arguments.colour);
    command.add_flag("--watch", arguments.watch, "Check again whenever a file, or one that it includes, changes");
    command.add_option("--explain", arguments.explained, "Print what a rule, or a code, means; all for all of them")
        ->option_text("RULE");
}

}  // namespace

void AddCheckCommand(CLI::App& app, ExitStatus& status) {
    auto arguments = std::make_shared<CheckArguments>();
    CLI::App* command = app.add_subcommand("check", "Say what is wrong with files, why, and how to mend it");
    AddOptions(*command, *arguments);
    command->footer(
        "What is wrong goes to standard error as FILE:LINE:COLUMN: error: MESSAGE [CODE], warnings with the name of\n"
        "their rule instead of a code. With --format=json or sarif it goes to standard output; docs/json.md describes\n"
        "the former field by field.");
    command->callback([arguments, &status] { status = Run(*arguments); });
}
