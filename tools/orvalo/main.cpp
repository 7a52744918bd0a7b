#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include "CheckCommand.h"
#include "Console.h"
#include "DiffCommand.h"
#include "ExitStatus.h"
#include "ExportCommand.h"
#include "ExtractCommand.h"
#include "FormatCommand.h"
#include "HarmlessText.h"
#include "InfoCommand.h"
#include "Interruption.h"
#include "NearestWord.h"
#include "PathText.h"
#include "StatsCommand.h"
#include "ValueCommand.h"
#include "ViewCommand.h"

namespace {

/// What the first argument can be.
enum class First { command, file, unknown };

First Classify(const std::string& argument, const std::vector<std::string>& commands) {
    if (argument == "--help" || argument == "-h" || argument == "--version") return First::command;
    if (std::find(commands.begin(), commands.end(), argument) != commands.end()) return First::command;
    std::error_code unknown;
    const bool file = argument.starts_with('-') || argument.find_first_of("./\\") != std::string::npos ||
                      std::filesystem::exists(PathOf(argument), unknown);
    return file ? First::file : First::unknown;
}

ExitStatus RefuseCommand(const std::string& word, const std::vector<std::string>& commands) {
    const std::string nearest = NearestWord(word, commands);
    const std::string hint = nearest.empty() ? fmt::format("The commands are {}.", fmt::join(commands, ", "))
                                             : fmt::format("Did you mean '{}'?", nearest);
    fmt::print(stderr, "orvalo: '{}' is neither a command nor a file. {}\n", Harmless(word), hint);
    return ExitStatus::wrongUsage;
}

/// Help, or what is wrong with the command line, which may hold whatever a file is called.
ExitStatus Explain(const CLI::App& app, const CLI::ParseError& error) {
    std::stringstream wrong;
    const int code = app.exit(error, std::cout, wrong);
    for (std::string line; std::getline(wrong, line);) fmt::print(stderr, "{}\n", Harmless(line));
    return code == 0 ? ExitStatus::good : ExitStatus::wrongUsage;
}

ExitStatus Run(std::vector<std::string> arguments) {
    ExitStatus status = ExitStatus::good;
    CLI::App app("Checks and summarises elastic wave models and simulation results.", "orvalo");
    app.set_version_flag("--version", "orvalo " ORVALO_VERSION);
    app.require_subcommand(1);
    // What begins with a slash is a path.
    app.allow_windows_style_options(false);
    AddCheckCommand(app, status);
    AddInfoCommand(app, status);
    AddValueCommand(app, status);
    AddStatsCommand(app, status);
    AddDiffCommand(app, status);
    AddExtractCommand(app, status);
    AddExportCommand(app, status);
    AddViewCommand(app, status);
    AddFormatCommand(app, status);
    app.footer(
        "orvalo FILE... is short for orvalo info FILE...\n\n"
        "Exit status: 0 all is good; 1 a file has errors, files differ, a value does not exist or a model is not\n"
        "tidy; 2 wrong usage; 3 a file cannot be opened, read or written. Of several files the worst counts: 3\n"
        "before 1 before 0.");

    std::vector<std::string> commands;
    for (const CLI::App* command : app.get_subcommands({})) commands.push_back(command->get_name());
    const First first = arguments.empty() ? First::command : Classify(arguments.front(), commands);
    if (first == First::unknown) return RefuseCommand(arguments.front(), commands);
    if (first == First::file) arguments.insert(arguments.begin(), "info");
    std::reverse(arguments.begin(), arguments.end());
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return Explain(app, error);
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        PrepareConsole();
        const ExitStatus status = Run(CommandLine(argc, argv));
        if (std::fflush(stdout) == 0) return static_cast<int>(status);
        std::perror("orvalo: standard output");
    } catch (const Interrupted&) {
        EndInterrupted();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "orvalo: %s\n", exception.what());
    }
    return static_cast<int>(ExitStatus::unreadableFile);
}
