#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Check/CheckModel.h>

#include "Check/Mistakes.h"

namespace orvalo {
namespace {

using namespace support;

std::string Showed(const InputPlace& place, const std::string& text) {
    return (place.path.empty() ? "" : std::to_string(place.line) + ' ') + text;
}

/// All that a diagnostic says besides its message, a line for each note and fix.
std::string Told(const Diagnostic& diagnostic) {
    std::string told = "\n";
    for (const Note& note : diagnostic.notes) told += Showed(note.place, note.message) + '\n';
    for (const Fix& fix : diagnostic.fixes) told += Showed(fix.place, "-> " + fix.replacement) + '\n';
    return told;
}

const Diagnostic* Find(const std::vector<Diagnostic>& diagnostics, int code) {
    const auto found =
        std::find_if(diagnostics.begin(), diagnostics.end(), [&](const auto& d) { return d.code == code; });
    return found == diagnostics.end() ? nullptr : &*found;
}

std::vector<Diagnostic> Check(const std::string& text) {
    return CheckModel(WriteFile("m.model", text));
}

TEST(Explanations, SayWhatToWriteInstead) {
    WriteIncludedFiles();
    ASSERT_EQ(ReadText(explainedModel).code, 0);
    for (const Mistake& mistake : explainedMistakes) {
        SCOPED_TRACE(std::string(mistake.what) + " -> " + mistake.with);
        std::string text = explainedModel;
        const std::size_t at = *mistake.what == '\0' ? text.size() : text.find(mistake.what);
        ASSERT_NE(at, std::string::npos);
        text.replace(at, std::string_view(mistake.what).size(), mistake.with);
        if (text.back() != '\n') text += '\n';
        const std::vector<Diagnostic> found = Check(text);
        const Diagnostic* const diagnostic = Find(found, mistake.code);
        ASSERT_NE(diagnostic, nullptr);
        EXPECT_EQ(PlaceIn("m.model", diagnostic->place), mistake.place);
        const std::string told = Told(*diagnostic);
        for (const std::string_view piece : mistake.told) {
            const std::string line = '\n' + std::string(piece);
            const bool placed = piece[0] >= '0' && piece[0] <= '9' && piece.find(' ') <= 2;
            EXPECT_NE(told.find(placed ? line : std::string(piece)), std::string::npos) << piece << " in" << told;
        }
        for (const Fix& fix : diagnostic->fixes) {
            std::string mended = text;
            mended.replace(fix.place.offset, fix.length, fix.replacement);
            EXPECT_EQ(Find(Check(mended), mistake.code), nullptr) << "after " << fix.replacement;
        }
    }
}

}  // namespace
}  // namespace orvalo
