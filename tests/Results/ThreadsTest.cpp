#include <bit>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Results/CellLookup.h"
#include "Results/ResultsFiles.h"
#include "Results/ResultsTxtReader.h"

// What is read does not depend on how many threads read it.

namespace orvalo {
namespace {

/// All that results hold.
std::string Show(const Results& results) {
    std::string text = Describe(results);
    for (unsigned int row = 0; row < results.RowCount(); ++row) {
        text += '\n';
        for (unsigned int col = 0; col < results.IndicesColCount(); ++col)
            text += std::to_string(results.IndexGet(col, row)) + ' ';
        for (unsigned int col = 0; col < results.ValuesColCount(); ++col)
            text += std::to_string(std::bit_cast<std::uint64_t>(results.ValueGet(col, row))) + ' ';
    }
    return text;
}

/// What comes of reading, text in portions of `readSize`, and how far it went.
std::string ReadBy(unsigned int threads, std::size_t readSize, const std::string& path, bool isText) {
    float progress = 0;
    std::string outcome;
    try {
        if (isText) {
            ResultsTxt results(path);
            platform::InputFile file;
            EXPECT_TRUE(file.Open(path));
            ResultsTxtReader(results, &progress, StopFlag(), threads, readSize).Execute(file, "");
            outcome = Show(results);
        } else {
            ResultsReader reader(path);
            reader.Threads(threads);
            reader.TraceProgress(&progress);
            outcome = Show(*std::unique_ptr<Results>(reader.Execute()));
        }
    } catch (const Exception& failure) {
        outcome = Describe(failure, path);
    }
    return outcome + "\nprogress " + std::to_string(progress);
}

/// Texts of some hundred rows, many with something amiss.
std::string RandomText(std::mt19937& random) {
    using namespace std::string_literals;
    const auto below = [&](unsigned int bound) { return static_cast<unsigned int>(random() % bound); };
    const auto oneOf = [&](const std::string& bars) {
        const auto choices = support::Split(bars, "|");
        return choices[below(static_cast<unsigned int>(choices.size()))];
    };
    const std::string lineEnd = oneOf("\n|\r\n");
    const bool indexed = below(2) == 0;
    const unsigned int values = 1 + below(4);
    const unsigned int rows = below(400);
    const unsigned int flaws = below(3) == 0 ? 0 : 60 + 8 * rows;
    const auto flaw = [&] { return flaws != 0 && below(flaws) == 0; };
    std::string text = indexed ? "x\ty\tz\tf\tu" : "u";
    for (unsigned int i = 1; i < values; ++i) text += "\tu";
    text += lineEnd;
    for (unsigned int row = 0; row < rows; ++row) {
        for (unsigned int i = indexed ? 0 : 4; i < 4; ++i) {
            text += flaw() ? oneOf("70000||-1|x|\0"s) : std::to_string(row * (i + 7) % 100);
            text += '\t';
        }
        for (unsigned int i = 0; i < values; ++i) {
            text += i == 0 ? "" : flaw() ? oneOf("\t\t|,| |\0|"s) : "\t";
            text += flaw() ? oneOf("|1e|nan|1.5.5|1e400|" + std::string(below(20) == 0 ? 70'000 : 90, '3'))
                           : std::to_string(static_cast<int>(below(2000)) - 1000) + oneOf("|.25|.123456789|e-3");
        }
        text += flaw() ? oneOf("\n\n|\r|\r\r\n|\t\n|\0\n||\t5\n"s) : lineEnd;
    }
    if (below(4) == 0) text.resize(below(static_cast<unsigned int>(text.size())));
    return text;
}

TEST(ThreadsOfResults, ReadTextAsOneDoes) {
    std::mt19937 random(20261121);
    unsigned int succeeded = 0;
    constexpr unsigned int cases = 600;
    for (unsigned int i = 0; i < cases && !HasFailure(); ++i) {
        const std::string text = RandomText(random);
        const std::string path = support::WriteFile("text", text);
        const std::string expected = ReadBy(1, 300'000, path, true);
        succeeded += expected.find('x') < 9 ? 1 : 0;
        // Blocks that are smaller than a row are for short texts: each is a wait for another thread's turn.
        EXPECT_EQ(ReadBy(3, text.size() < 500 ? 7 : 600, path, true), expected) << testing::PrintToString(text);
    }
    EXPECT_GT(succeeded, cases / 4);
    EXPECT_LT(succeeded, cases * 3 / 4);
}

TEST(ThreadsOfResults, ReadMatricesAsOneDoes) {
    constexpr unsigned int rows = 400'000;
    std::vector<double> values(2 * std::size_t{rows});
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
    std::vector<short> indices(3 * std::size_t{rows});
    for (std::size_t i = 0; i < indices.size(); ++i) indices[i] = static_cast<short>(i * 7 % 113);
    const std::string file = MatHeader() + Values(2, values).Bytes() + Indices(3, indices).Bytes();
    for (const std::size_t end : {file.size(), file.size() - 1, file.size() / 2, std::size_t{1'000'000}}) {
        const std::string path = support::WriteFile("mat", file.substr(0, end));
        EXPECT_EQ(ReadBy(3, 0, path, false), ReadBy(1, 0, path, false)) << end;
    }
}

// Rows in the order of their cells, in none, in a box of which most cells are in no row, and along x up to its end.
TEST(ThreadsOfResults, FindTheRowsThatOneFinds) {
    constexpr std::size_t rows = 200'000;
    std::mt19937 random(20261122);
    for (const unsigned int kind : {0U, 1U, 2U, 3U}) {
        std::vector<short> x(rows);
        std::vector<short> y(rows);
        std::vector<short> z(rows);
        for (std::size_t i = 0; i < rows; ++i) {
            const std::size_t cell = kind == 0 ? i : kind == 1 ? random() % (rows / 2) : i * 300 % 60'000'000;
            x[i] = static_cast<short>(kind == 3 ? i : cell % 50 - 20);
            y[i] = static_cast<short>(kind == 3 ? i >> 16U : cell / 50 % 80);
            z[i] = static_cast<short>(kind == 3 ? 0 : cell / 4000);
        }
        const CoordinateRun runs[] = {{x.data(), y.data(), z.data(), 1, rows / 3},
                                      {&x[rows / 3], &y[rows / 3], &z[rows / 3], 1, rows - rows / 3}};
        CellLookup one;
        CellLookup three;
        ASSERT_TRUE(one.Build(runs, StopFlag(), 1) && three.Build(runs, StopFlag(), 3));
        for (std::size_t i = 0; i < rows; ++i) {
            const std::uint32_t row = one.RowFromOne(x[i], y[i], z[i]);
            ASSERT_EQ(three.RowFromOne(x[i], y[i], z[i]), row) << kind;
            ASSERT_TRUE(row > i && x[row - 1] == x[i] && y[row - 1] == y[i] && z[row - 1] == z[i]) << kind;
        }
    }
}

}  // namespace
}  // namespace orvalo
