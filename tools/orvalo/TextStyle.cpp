#include "TextStyle.h"

#include <map>
#include <string>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>

#include "Terminal.h"

namespace {

// As wide as a wide terminal: what is not seen on one is read in a log or an editor.
constexpr std::size_t widthElsewhere = 120;

}  // namespace

void AddColourOption(CLI::App& command, ColourMode& mode) {
    const std::map<std::string, ColourMode> modes = {
        {"auto", ColourMode::automatic}, {"always", ColourMode::always}, {"never", ColourMode::never}};
    command.add_option("--color", mode, "When to colour: auto does on a terminal, unless NO_COLOR is set")
        ->transform(CLI::CheckedTransformer(modes))
        ->option_text("auto|always|never");
}

TextStyle::TextStyle(std::FILE* stream, ColourMode mode)
    : colour_(mode == ColourMode::always || (mode == ColourMode::automatic && WantsColour(stream))),
      width_(IsTerminal(stream) ? TerminalWidth(stream) : widthElsewhere) {}
