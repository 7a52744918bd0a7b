#include <cstddef>
#include <iterator>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Check/SourceTokens.h"

// The rows of MATERIALS: a number, a format, a name in quotes, and as many numbers as the format has.

namespace orvalo {

namespace {

constexpr const char* row = "A material is a number, a format, a name in double quotes, and the numbers of the format.";

struct MaterialFormat {
    std::uint64_t numbers;
    const char* meaning;
};
constexpr MaterialFormat formats[] = {
    {3, "density, longitudinal and transverse wave speed"},
    {3, "density, Young's modulus, Poisson's ratio"},
    {9, "three coefficients each for density, Young's modulus and Poisson's ratio"},
};

/// The material that was read, or begun, before the error; null for the first.
const PropertyRecord* Before(ErrorCollector& errors) {
    const auto& read = errors.CurrentSection()->properties;
    return read.empty() ? nullptr : &read.back();
}

/// What a material has as it stands in the file.
struct WrittenMaterial {
    std::string format;
    std::uint64_t numbers = 0;
    const MaterialFormat* meant = nullptr;
};

WrittenMaterial Written(ErrorCollector& errors, const InputPlace& place) {
    WrittenMaterial written;
    SourceTokens tokens(errors.Source(), place);
    if (!tokens.Next() || !tokens.Next() || tokens.text.size() != 1) return written;
    written.format = tokens.text;
    const auto index = static_cast<std::size_t>(written.format[0] - '0');
    if (index >= std::size(formats) || !tokens.Next()) return written;
    written.meant = &formats[index];
    while (tokens.Next() && tokens.IsNumber() && tokens.Line() == place.line) ++written.numbers;
    return written;
}

/// Tells of a material that has other numbers than its format: they are then taken for what they are not.
bool TellNumbers(Diagnostic& diagnostic, ErrorCollector& errors, const PropertyRecord& material) {
    const InputPlace place = errors.record.PlaceOf(material.place);
    const WrittenMaterial written = Written(errors, place);
    if (written.meant == nullptr || written.numbers == written.meant->numbers) return false;
    AddNote(diagnostic,
            "Material " + Shown(material.value) + " has " + Counted(written.numbers, "number") +
                " on its line; format " + written.format + " takes " + std::to_string(written.meant->numbers) + ": " +
                written.meant->meaning + '.',
            place, errors.Source().TokenAt(place).size());
    return true;
}

bool TellMissingEnd(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (!errors.Core().AtSection()) return false;
    const SectionRecord& section = *errors.CurrentSection();
    AddNote(diagnostic, "MATERIALS begins here and has no END.", errors.record.PlaceOf(section.place),
            section.section->word.size());
    diagnostic.fixes.push_back({diagnostic.place, 0, "END\n"});
    return true;
}

bool BeginsLine(ErrorCollector& errors, const InputPlace& place) {
    std::size_t at = 0;
    const std::string_view line = errors.Source().LineOf(place, at);
    return line.substr(0, at).find_first_not_of(" \t,") == std::string_view::npos;
}

}  // namespace

bool ExplainMaterialNumbers(Diagnostic& diagnostic, ErrorCollector& errors) {
    const auto& open = errors.OpenProperties();
    if (open.empty() || !open.back().word.empty()) return false;
    if (!TellNumbers(diagnostic, errors, open.back())) AddNote(diagnostic, row);
    if (errors.Core().token.type == TokenType::String) ExplainNoNumber(diagnostic, errors);
    return true;
}

void ExplainMaterialNumber(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (TellMissingEnd(diagnostic, errors)) return;
    if (ExplainNeighbours(diagnostic, errors)) return;
    const PropertyRecord* const before = Before(errors);
    if (before != nullptr && !BeginsLine(errors, diagnostic.place) && TellNumbers(diagnostic, errors, *before)) return;
    const Token& token = errors.Core().token;
    if (token.type == TokenType::Number) {
        return AddNote(diagnostic,
                       token.value == 0.0
                           ? "Number 0 is air, which is built in. Materials of a model have numbers from 1 to 255."
                           : "Materials have whole numbers from 1 to 255.");
    }
    if (ExplainNoNumber(diagnostic, errors)) return;
    AddNote(diagnostic, row);
}

void ExplainMaterialReused(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const before = Before(errors);
    if (before != nullptr && !BeginsLine(errors, diagnostic.place) && TellNumbers(diagnostic, errors, *before)) return;
    const double number = errors.Core().token.value;
    for (const PropertyRecord& material : errors.CurrentSection()->properties) {
        if (material.Whole() != static_cast<int>(number)) continue;
        AddNote(diagnostic, "Material " + Shown(number) + " was defined here.", errors.record.PlaceOf(material.place),
                1);
        constexpr double largest = 255.0;
        errors.PostponeFreeNumber(
            {0, {diagnostic.place, diagnostic.length, ""}, "materials", material.word, false, largest});
        return;
    }
}

void ExplainMaterialFormat(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const before = Before(errors);
    const Token& token = errors.Core().token;
    constexpr int reserved = 149;
    if (diagnostic.code == reserved) {
        AddNote(diagnostic, "Format 3 is reserved for a later version.");
    } else if (token.type == TokenType::String) {
        return AddNote(diagnostic, "The format is missing: it stands between the number of a material and its name.");
    }
    // A number too many makes the next material begin too early.
    if (before != nullptr && TellNumbers(diagnostic, errors, *before)) return;
    std::string note = "The format says what numbers follow the name.";
    note.append(" 0: ").append(formats[0].meaning).append("; 1: ").append(formats[1].meaning);
    note.append("; 2: ").append(formats[2].meaning).append(".");
    AddNote(diagnostic, note);
}

void ExplainMaterialName(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (errors.Core().token.type == TokenType::Keyword && !errors.Core().AtSection() &&
        !errors.Core().IsKeyword("end")) {
        QuoteName(diagnostic, errors);
        return;
    }
    const PropertyRecord* const before = Before(errors);
    if (before != nullptr && TellNumbers(diagnostic, errors, *before)) return;
    AddNote(diagnostic, row);
}

}  // namespace orvalo
