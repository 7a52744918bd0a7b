#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "Support/Emulated.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace std::string_literals;
using namespace support;

// Reported places counted by hand, true ones marked. A row of four numbers counts 7 columns on a line of its own
// however many digits they have; a line feed starts anew unless it ended the token before.
TEST(BulkRows, ReportPlacesByTheirOwnCount) {
    const std::string head = "CUBES count 2 format 0 data";
    const std::string warm = "CUBES count 2 format 1 data";
    const std::tuple<int, std::string, std::uint64_t, std::uint64_t, std::uint64_t> table[] = {
        // The place of `data` while reading rows, that of the token after them afterwards.
        {122, head + "\n1 1 1 1\n10 20 @40000 1\nEND END\n", 1, 24, 2},
        {133, head + "\n1 1 1 1\n1 1 1 1\n@x", 3, 2, 0},
        {133, head + "\r\n1 1 1 1\r\n1 1 1 1\r\n@x", 4, 2, 0},
        {133, head + "\n10000 2000 30 1\n4000 50 600 1 @x", 2, 10, 0},
        {133, "CUBES count 1 format 0 data 10 20 30 1 @x", 1, 38, 0},
        {133, head + "\n1,1\t1 1\n\n\n1 1 1 1,,@x", 4, 11, 0},
        {178, head + "\n1 1 1 1\n1 1 1 1\nEND\n@x", 3, 6, 0},
        {178, head + "\n1 1 1 1\nEND\n@x", 2, 6, 0},
        // Temperatures are tokens: a line feed that ends one is not counted.
        {180, warm + "\r\n1 1 1 1 20.5\r\n1 1 1 1 @hot", 3, 8, 2},
        {133, warm + "\n1 1 1 1 20.5\n10 10 10 1 -3e1\n@x", 1, 56, 0},
        {183, "DAMPING count 2 data\n1 1 1 1 0.5\n1 1 1 1 @hot", 1, 41, 2},
    };
    for (const auto& [code, text, line, column, row] : table) {
        const MarkedText marked(text);
        const std::string start = LocatedMessage("m.model", {{}, 0, line, column}, "");
        for (const std::size_t size : {std::size_t{1}, Lexer::defaultBufferSize}) {
            const Outcome outcome = ReadText(marked.text, {true, true, size});
            EXPECT_EQ(outcome.code, code) << marked.text;
            EXPECT_EQ(outcome.what.substr(0, start.size()), start) << marked.text;
            EXPECT_EQ(ToText(outcome.place), ToText(marked.truth)) << marked.text;
            EXPECT_EQ(outcome.row, row) << marked.text;
        }
    }
}

/// Texts of sections with rows, most of them regular, many with something amiss.
class RowTexts {
public:
    std::string Next() {
        const unsigned int kind = Below(4);
        const unsigned int rows = Below(Below(8) == 0 ? 400 : 12);
        // A spoilt text has a flaw in every few numbers or gaps; a plain one has none.
        flaws_ = Below(3) == 0 ? 0 : 60 + 10 * rows;
        // Rows of one shape, or of many.
        digits_ = Below(7);
        blank_ = OneOf(" | | |\t|,|  |, ");
        lineEnd_ = OneOf("\n|\n|\n|\r\n|\r\n|" + blank_);
        const std::string count = std::to_string(rows + Below(20) / 18 - (rows > 1 ? Below(20) / 18 : 0));
        // A second grid finds the progress of the first one.
        std::string text = kind == 2 || Below(4) == 0 ? "CUBES count 1 format 0 data 1 1 1 1 END END\n" : "";
        if (kind == 0) text += "CUBES count " + count + " format 0 data" + Gap(lineEnd_) + Rows(rows, 4, 0);
        if (kind == 1) text += "CUBES count " + count + " format 1 data" + Gap(lineEnd_) + Rows(rows, 4, 1);
        if (kind == 2) text += "DAMPING count " + count + " data" + Gap(lineEnd_) + Rows(rows, 4, 1);
        if (kind == 3) text = Sections("AMC") + "SET id 1 count " + count + " data" + Gap(lineEnd_) + Rows(rows, 3, 0);
        text += "END END" + lineEnd_;
        if (kind == 3) {
            text += Sections("SX") + "TABLE id 7 count " + count + " data" + Gap(lineEnd_) + Rows(rows, 0, 1);
            text += "END END" + lineEnd_;
        }
        cubesOnly = kind != 3;
        if (Below(8) == 0) text.resize(Below(static_cast<unsigned int>(text.size())));
        return text;
    }

    bool cubesOnly = false;

private:
    unsigned int Below(unsigned int bound) { return static_cast<unsigned int>(random_() % bound); }
    bool Flaw() { return flaws_ != 0 && Below(flaws_) == 0; }
    std::string OneOf(const std::string& bars) {
        const std::vector<std::string> choices = Split(bars, "|");
        return choices[Below(static_cast<unsigned int>(choices.size()))];
    }

    std::string Gap(const std::string& usual) {
        if (!Flaw()) return usual;
        return OneOf(
            "\n\n|\r\n\r\n| \n|\n |\r|\t\t|,| , ||.|-|=|#|%x\n|x|\x8a|\xb0\xb9|\n\t|\"| end |\ninclude \"rows.inc\"\n|_|\v|\0|"s +
            std::string(70, ' '));
    }

    std::string Natural() {
        if (Flaw()) {
            return OneOf("12345|32767|32768|65536|00001|000000001|4294967297|0|255|256||1.5|-1|1e2|9999|10000|" +
                         std::string(80, '7'));
        }
        static constexpr unsigned int powers[] = {1, 10, 100, 1000, 10000};
        const unsigned int digits = digits_ == 0 || digits_ > 4 || Below(30) == 0 ? 1 + Below(4) : digits_;
        return std::to_string(powers[digits - 1] + Below(powers[digits] - powers[digits - 1]));
    }

    std::string Decimal() {
        if (Flaw()) return OneOf("x|-  5|1e|.|5.|.5|+7E+2|\"5\"|1..2||END|12345678901234567890.5|1e400|-|0x10");
        return OneOf("|-|+") + std::to_string(Below(1000)) + OneOf("|.|.25|.123456789|e-3|E5");
    }

    std::string Rows(unsigned int rows, unsigned int naturals, unsigned int decimals) {
        std::string text;
        for (unsigned int row = 0; row < rows; ++row) {
            for (unsigned int i = 0; i < naturals; ++i) {
                if (i != 0) text += Gap(blank_);
                // In cubes-only mode every number from 1 to 255 is a material.
                text += i == 3 && !Flaw() ? std::to_string(1 + Below(digits_ < 5 ? 9 : 255)) : Natural();
            }
            for (unsigned int i = 0; i < decimals; ++i) text += (naturals == 0 ? "" : Gap(" ")) + Decimal();
            text += Gap(Below(flaws_ == 0 ? 1000 : 20) == 0 ? " " : lineEnd_);
        }
        return text;
    }

    std::mt19937 random_{20240611};
    unsigned int flaws_ = 0;
    unsigned int digits_ = 0;
    std::string lineEnd_;
    std::string blank_;
};

/// All that came of a read, and how far it said that it was.
std::string Told(const Outcome& outcome) {
    return std::to_string(outcome.cubes) + " cubes\n" + Fingerprint(outcome);
}

/// With a buffer of one byte only the general path runs, so that whatever the fast ones do differently shows; with
/// small ones several threads have much to share.
TEST(BulkRows, FastPathsReadLikeTheGeneralOne) {
    RowTexts texts;
    unsigned int succeeded = 0;
    constexpr unsigned int cases = emulated ? 300 : 3000;
    WriteFile("rows.inc", "1 2 3 4\n5 6 7 8\n");
    for (unsigned int i = 0; i < cases && !HasFailure(); ++i) {
        const std::string text = texts.Next();
        const std::string path = WriteFile("rows.model", text);
        const bool asDoubles = i % 2 == 0;
        const Outcome general = ReadPath(path, {texts.cubesOnly, asDoubles, 1, 1});
        succeeded += general.code == 0 ? 1 : 0;
        const std::string expected = Told(general);
        for (const std::size_t size : {std::size_t{2}, std::size_t{3}, std::size_t{7}, std::size_t{64}, std::size_t{65},
                                       Lexer::defaultBufferSize}) {
            // Each block is a wait for another thread's turn, which is long where more are to run than can: blocks that
            // are smaller than a row are for short texts.
            const std::size_t shared = text.size() < 400 && i % 8 == 0 ? 7 : 64;
            const unsigned int threads = i % 4 == 0 && size == shared ? 3 : 1;
            EXPECT_EQ(Told(ReadPath(path, {texts.cubesOnly, asDoubles, size, threads})), expected)
                << "buffer " << size << ", threads " << threads << ", text " << testing::PrintToString(text);
        }
    }
    // Both kinds of outcome are well represented.
    EXPECT_GT(succeeded, cases / 4);
    EXPECT_LT(succeeded, cases * 3 / 4);
}

}  // namespace
}  // namespace orvalo
