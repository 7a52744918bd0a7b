#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Check/CheckModel.h>

#include "Reader/Sections.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

/// Checks what nobody wrote, and demands that the first error is the reader's and that all are in order and in the
/// file. Returns how many there are, those in rows apart.
std::size_t CountDiagnostics(const std::string& text, bool warnings) {
    const std::string path = WriteFile("random.model", text);
    const Outcome outcome = ReadPath(path);
    CheckOptions options;
    options.warnings = warnings;
    const std::vector<Diagnostic> all = CheckModel(path, options);
    const auto first =
        std::find_if(all.begin(), all.end(), [](const Diagnostic& d) { return d.severity == Severity::Error; });
    EXPECT_EQ(first == all.end() ? 0 : first->code, outcome.code) << outcome.what;
    if (first != all.end()) {
        EXPECT_EQ(ToText(first->place), ToText(outcome.place));
    }
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end(), [](const Diagnostic& a, const Diagnostic& b) {
        return a.place.offset < b.place.offset;
    }));
    for (const Diagnostic& d : all) EXPECT_LE(d.place.offset + d.length, text.size()) << d.message;
    const auto outside = std::count_if(all.begin(), all.end(), [](const Diagnostic& d) { return d.row == 0; });
    return static_cast<std::size_t>(outside);
}

TEST(RandomText, EndsAfterAHundredDiagnostics) {
    std::mt19937 random(11);
    const auto below = [&random](std::size_t end) { return random() % end; };
    std::vector<std::string> words = {"\n",    "\n",      "\n",           "0",      "1",  "1.5", "-3",    "1e9",
                                      "\"a\"", "=",       "end",          "end",    "; ", "#",   "1 1 1", "i",
                                      "t",     "1 1 1 1", "\xEF\xBB\xBF", "include"};
    for (const Section& section : sections) {
        words.emplace_back(section.word);
        for (std::size_t i = 0; i < section.words().size(); ++i) words.emplace_back(section.words()[i]);
    }
    for (int i = 0; i < 400 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        std::string bytes(below(6000), '\0');
        for (char& byte : bytes) byte = static_cast<char>(i % 2 == 0 ? below(256) : ' ' + below(95));
        EXPECT_LE(CountDiagnostics(bytes, true), 100U);
        std::string soup = i % 2 == 0 ? "" : Sections("AMC");
        for (std::size_t left = below(3000); left > 0; --left) soup += words[below(words.size())] + ' ';
        EXPECT_LE(CountDiagnostics(soup, false), 100U);
    }
}

TEST(RandomText, IsCheckedByThreadsAsByOne) {
    std::string text =
        "ANALYSIS cellsize 1 timestep 0.1 END MATERIALS 1 0 \"s\" 1 1 1 END\nCUBES count 400000 format 0 data\n";
    for (unsigned int i = 0; i < 300'000; ++i) {
        const char* const row = i % 50'000 != 49'999 ? " 1\n" : i % 100'000 != 99'999 ? " x\n" : "\n";
        text += std::to_string(i % 200 + 1) + ' ' + std::to_string(i / 200 % 200 + 1) + " 1" + row;
    }
    const std::string path = support::WriteFile("main.model", text + "END END\nTABLE id 1 count x END\n");
    const auto found = [&](unsigned int threads) {
        CheckOptions options;
        options.threads = threads;
        std::string all;
        for (const Diagnostic& diagnostic : CheckModel(path, options)) {
            const InputPlace& place = diagnostic.place;
            for (const std::uint64_t number : {place.offset, place.line, place.column, diagnostic.row})
                all += std::to_string(number) + ' ';
            all += diagnostic.message + '\n';
        }
        return all;
    };
    const std::string expected = found(1);
    EXPECT_NE(expected.find(" 50000 "), std::string::npos) << expected;
    EXPECT_EQ(found(3), expected);
}

std::string Times(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

/// Of sizes at which time that grows with the square of the text would be noticed by whoever waits for the tests.
TEST(RandomText, OfAnyLengthIsReadInOnePass) {
    const std::string rows =
        "ANALYSIS cellsize 1 timestep 0.1 END MATERIALS 1 0 \"s\" 1 1 1 END CUBES count 9999999 "
        "format 0 data\n";
    const std::string wave = "ACTUATOR shape point position 1 1 1 input wave method force table ";
    const std::function<std::string(std::size_t)> texts[] = {
        [&](std::size_t n) { return rows + Times(n, "1 1 x 1\n"); },
        [&](std::size_t n) { return rows + Times(n, "1 1 1 7\n"); },
        [&](std::size_t n) { return rows + Times(n, "= 1 1 1 1 "); },
        [&](std::size_t n) { return rows + Times(n, "1 1 x 1 "); },
        [&](std::size_t n) { return rows + Times(n, "; x\n1 1 1 1\n"); },
        [&](std::size_t n) { return Sections("AMC") + Times(n, "TABLE id 1 count 1 data x END END\n"); },
        [&](std::size_t n) { return Sections("AMC") + "TABLE id " + Times(n, "x "); },
        [&](std::size_t n) {
            std::string text = Sections("AMC") + "TABLE id x count 1 data 1 END END\n";
            for (std::size_t i = 1; i < n; ++i) text += wave + std::to_string(i) + " END\n";
            return text;
        },
        [&](std::size_t n) { return Times(n, "\" \xFF 1 "); },
    };
    for (const auto& text : texts) {
        EXPECT_FALSE(CheckModel(WriteFile("long.model", text(60'000))).empty()) << text(1);
    }
}

}  // namespace
}  // namespace orvalo
