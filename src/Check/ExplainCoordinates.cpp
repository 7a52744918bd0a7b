#include <cstddef>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"

// Coordinates of properties; the axis of a patch.

namespace orvalo {

namespace {

struct Axis {
    std::string_view words[2];
    const char* vector;
};
constexpr Axis axes[] = {{{"x", "u"}, "1 0 0"}, {{"y", "v"}, "0 1 0"}, {{"z", "w"}, "0 0 1"}};

constexpr const char* axisNote = "The direction of a patch is one of three axes: 1 0 0, 0 1 0 or 0 0 1.";

/// Which of the three coordinates it is about, from 0.
std::size_t Index(const Diagnostic& diagnostic) {
    constexpr int first = 120;
    return static_cast<std::size_t>(diagnostic.code - first);
}

}  // namespace

void ExplainCoordinate(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    if (core.row > 0) return ExplainRowField(diagnostic, errors);
    if (errors.OpenProperties().empty()) return;
    const PropertyRecord& property = errors.OpenProperties().back();
    if (property.word == "data") return ExplainPoint(diagnostic, errors);
    const bool patch = property.word == "direction";
    for (const Axis& axis : axes) {
        for (const std::string_view word : axis.words) {
            if (!patch || !core.IsKeyword(word) || Index(diagnostic) > 0) continue;
            AddNote(diagnostic, axisNote);
            return AddFix(diagnostic, axis.vector);
        }
    }
    const std::string word(property.word);
    const bool ended = core.token.type == TokenType::Keyword || core.token.type == TokenType::EndOfFile;
    if (ended && Index(diagnostic) > 0) {
        AddNote(diagnostic,
                '\'' + word + "' takes three whole numbers, x y z; " + std::to_string(Index(diagnostic)) + " of them " +
                    (Index(diagnostic) == 1 ? "stands" : "stand") + " here.",
                errors.record.PlaceOf(property.place), word.size());
        return;
    }
    if (ExplainNoNumber(diagnostic, errors)) return;
    AddNote(diagnostic,
            patch ? axisNote : '\'' + word + "' takes three whole numbers, x y z, from -32768 to 32767 each.");
}

void ExplainPiezoDirection(Diagnostic& diagnostic, ErrorCollector&) {
    AddNote(diagnostic, axisNote);
}

}  // namespace orvalo
