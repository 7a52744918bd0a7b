#include <cstdio>
#include <exception>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <fmt/format.h>

#include "CheckCommand.h"
#include "ExitStatus.h"
#include "InfoCommand.h"
#include "ValueCommand.h"

namespace {

ExitStatus Run(int argc, char** argv) {
    ExitStatus status = ExitStatus::good;
    CLI::App app("Checks and summarises elastic wave models and simulation results.", "orvalo");
    app.set_version_flag("--version", "orvalo " ORVALO_VERSION);
    app.require_subcommand(1);
    AddCheckCommand(app, status);
    AddInfoCommand(app, status);
    AddValueCommand(app, status);
    app.footer(
        "Exit status: 0 all is good; 1 a file has errors, or a value does not exist; 2 wrong usage; 3 a file cannot\n"
        "be opened or read. Of several files the worst counts: 3 before 1 before 0.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitStatus::good : ExitStatus::wrongUsage;
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const ExitStatus status = Run(argc, argv);
        if (std::fflush(stdout) == 0) return static_cast<int>(status);
        std::perror("orvalo: standard output");
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "orvalo: %s\n", exception.what());
    }
    return static_cast<int>(ExitStatus::unreadableFile);
}
