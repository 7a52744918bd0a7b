#include "ValueCommand.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/format.h>

#include <Orvalo3DReader/Common/Exception.h>

#include "CommonOptions.h"
#include "DiagnosticText.h"
#include "ExitStatus.h"
#include "HarmlessText.h"
#include "InputFile.h"
#include "ResultsSummary.h"
#include "TextStyle.h"

namespace {

struct ValueOptions {
    std::string path;
    std::string column;
    std::string row;
    std::array<std::string, 3> cube;
    ColourMode colour = ColourMode::automatic;
    unsigned threads = 0;
};

// A whole number. What the type does not hold becomes its least or greatest, which the library refuses by its message.
std::optional<int> ToCoordinate(const std::string& text) {
    const char* last = text.data() + text.size();
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (end != last || error == std::errc::invalid_argument) return std::nullopt;
    if (error != std::errc::result_out_of_range) return number;
    return text.starts_with('-') ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}

// Counted from 0, with all that is negative refused like the greatest.
std::optional<unsigned int> ToNumber(const std::string& text) {
    constexpr unsigned int greatest = std::numeric_limits<unsigned int>::max();
    const bool negative = text.starts_with('-');
    const char* first = text.data() + (negative ? 1 : 0);
    const char* last = text.data() + text.size();
    unsigned int number = 0;
    const auto [end, error] = std::from_chars(first, last, number);
    if (end != last || error == std::errc::invalid_argument) return std::nullopt;
    return negative || error == std::errc::result_out_of_range ? greatest : number;
}

std::string RefuseUnless(bool number, const std::string& text) {
    return number ? std::string() : "not a whole number: " + text;
}

// What reads as a number is one, also where a column bears a number as its name.
std::optional<unsigned int> FindColumn(const orvalo::Results& results, const std::string& column) {
    if (const auto number = ToNumber(column)) return number;
    const std::vector<std::string> names = ValueColumnNames(results);
    const auto found = std::find(names.begin(), names.end(), column);
    if (found == names.end()) return std::nullopt;
    return static_cast<unsigned int>(found - names.begin());
}

ExitStatus Refuse(const std::string& path, const std::string& message) {
    fmt::print(stderr, "{}: error: {}\n", Harmless(path), Harmless(message));
    return ExitStatus::badFile;
}

ExitStatus PrintValue(const InputFile& file, const ValueOptions& options) {
    const std::optional<unsigned int> column = FindColumn(*file.results, options.column);
    if (!column) return Refuse(file.checked.input.Name(), "No value column is named '" + options.column + "'.");
    try {
        const auto coordinate = [&](std::size_t axis) { return ToCoordinate(options.cube[axis]).value_or(0); };
        const double value = options.row.empty()
                                 ? file.results->ExValueGet(*column, coordinate(0), coordinate(1), coordinate(2))
                                 : file.results->ExValueGet(*column, ToNumber(options.row).value_or(0));
        fmt::print("{}\n", value);
    } catch (const orvalo::Exception& exception) {
        return Refuse(file.checked.input.Name(), fmt::format("{} [{}]", exception.what(), exception.code()));
    }
    return ExitStatus::good;
}

ExitStatus Value(const ValueOptions& options) {
    const InputFile file = ReadInputFile(options.path, {FileKind::results, false, false, options.threads});
    if (file.results) return PrintValue(file, options);
    PrintDiagnostics(file.checked.input, file.checked.diagnostics, TextStyle(stderr, options.colour));
    return file.Status();
}

}  // namespace

void AddValueCommand(CLI::App& app, ExitStatus& status) {
    auto options = std::make_shared<ValueOptions>();
    CLI::App* command = app.add_subcommand("value", "Print one value of a results file");
    command->add_option("RESULTS", options->path, "A results file; - reads standard input")->required();
    command->add_option("--column", options->column, "Value column: its number, from 0, or its name")->required();
    CLI::Option_group* place = command->add_option_group("place");
    place->add_option("--row", options->row, "Row, from 0")->check([](const std::string& text) {
        return RefuseUnless(ToNumber(text).has_value(), text);
    });
    place->add_option("--at", options->cube, "Coordinates of a cube")
        ->type_name("X Y Z")
        ->check([](const std::string& text) { return RefuseUnless(ToCoordinate(text).has_value(), text); });
    place->require_option(1);
    AddThreadsOption(*command, options->threads);
    AddColourOption(*command, options->colour);
    command->footer("The value is printed with as many digits as it takes to read the same number back.");
    command->callback([options, &status] { status = Value(*options); });
}
