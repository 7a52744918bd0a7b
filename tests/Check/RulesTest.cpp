#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Check/Rules.h>

#include "Check/RuleTable.h"
#include "Reader/Sections.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

/// The last code that model files raise.
constexpr int lastOfModels = 183;

const std::string drive =
    "ACTUATOR shape point position 1 1 1 input definition method force direction U type fullpulse waveform sine "
    "envelope "
    "none frequency 100 duration 20 phase 0 END\r\n";

/// A piece of a model as a whole one. A property is put into the first section that has it; what a piece has not, of
/// the sections that a model must have, is put before and after it, but where the lack of one is what it shows.
std::string Completed(const std::string& piece, bool wholeFile) {
    if (wholeFile) return piece;
    const std::string word = piece.substr(0, piece.find(' '));
    for (const std::string_view name : {"actuator", "sensor", "analysis"}) {
        const Section& section = sections[*WordList(sections).Find(name)];
        if (!section.words().Nearest(word)) continue;
        const std::string whole = Sections("AMC") + drive + Sections("S");
        const std::size_t after = whole.find(section.name) + std::string_view(section.name).size();
        return whole.substr(0, after) + ' ' + piece + ' ' + whole.substr(after);
    }
    std::string before;
    std::string after;
    bool begun = false;
    for (const auto& [letter, name] : {std::pair{'A', "ANALYSIS"}, {'M', "MATERIALS"}, {'C', "CUBES"}}) {
        const bool has = piece.find(name) != std::string::npos;
        begun = begun || has;
        if (!has) (begun ? after : before) += letter;
    }
    return Sections(before) + piece + "\r\n" + Sections(after) + drive + Sections("S");
}

/// Whether a rule is about results, or about what is no piece of a model.
bool IsOfOtherThings(const Rule& rule) {
    static const std::set<std::string> others = {"foreign-mat-file", "model-as-results", "near-miss-header",
                                                 "path-too-long", "unexpected-end-of-file"};
    return rule.code > lastOfModels || others.count(rule.name) != 0;
}

bool Raises(const std::string& text, const Rule& rule) {
    const auto raised = CheckModel(WriteFile("m.model", text));
    return std::any_of(raised.begin(), raised.end(), [&](const Diagnostic& diagnostic) {
        return diagnostic.rule == rule.name && diagnostic.severity == rule.severity && diagnostic.code == rule.code;
    });
}

TEST(Rules, TheirExamplesShowThem) {
    const std::set<std::string> wholeFiles = {"missing-analysis", "missing-materials", "missing-cubes",
                                              "missing-excitation", "missing-output"};
    WriteFile("grid.cubes", "; nothing");
    std::filesystem::create_directory(ScratchDirectory() + "/signals");
    for (const Rule& rule : Rules()) {
        if (IsOfOtherThings(rule)) continue;
        SCOPED_TRACE(rule.name);
        EXPECT_TRUE(Raises(Completed(rule.bad, wholeFiles.count(rule.name) != 0), rule));
        const std::string good = Completed(rule.good, false);
        EXPECT_FALSE(Raises(good, rule)) << good;
        const Outcome outcome = ReadText(good);
        EXPECT_EQ(outcome.code, 0) << outcome.what << " in " << good;
    }
}

TEST(Rules, AreFoundByNameAndCode) {
    for (const Rule& rule : Rules()) {
        EXPECT_EQ(FindRule(rule.name), &rule);
        EXPECT_TRUE(rule.code == 0 || RuleOfCode(rule.code) == std::string_view(rule.name)) << rule.name;
    }
    EXPECT_EQ(FindRule("no-such-rule"), nullptr);
    EXPECT_EQ(FindRule(""), nullptr);
}

}  // namespace
}  // namespace orvalo
