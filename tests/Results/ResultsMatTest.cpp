#include <cmath>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

constexpr const char* unreadable = "201 ResultsReader: Unable to read 'PATH' results file.";
constexpr const char* nonMatrix = "203 ResultsReader: Unable to read non-matrix objects from MatLab file.";
constexpr const char* badFlags = "204 ResultsReader: Unsupported matrix format (unknown flags settings).";
constexpr const char* badData =
    "205 ResultsReader: Unsupported data format (only doubles and 16-bit signed integers are supported).";
constexpr const char* noName = "206 ResultsReader: Unknown data format (variable name expected, other data found).";
constexpr const char* longName = "207 ResultsReader: Variable name too long.";
constexpr const char* tooManyVariables = "210 ResultsReader: Too many variables defined in the file.";
constexpr const char* rowCounts = "211 ResultsMat: Different rows count in indices and values matrices.";
constexpr const char* outOfMemory = "102 ResultsMat: Out of memory.";

std::string BadData(const std::string& name) {
    return "208 ResultsReader: Invalid raw data block size for '" + name + "' variable.";
}
std::string BadWhole(const std::string& name) {
    return "209 ResultsReader: Invalid data block size for '" + name + "' variable.";
}

/// Elements of a MAT-file, and what comes of reading it.
using Case = std::pair<std::string, std::string>;

void Check(const std::vector<Case>& cases) {
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(OutcomeOfBytes(MatHeader() + cases[i].first), cases[i].second) << "case " << i;
    }
}

const MatMatrix values = Values(2, {1, 2, 3, 4});
const MatMatrix indices = Indices(3, {7, 8, 0, 0, -1, -1});
const std::string both = values.Bytes() + indices.Bytes();
constexpr const char* bothRead = "2x2+3 | 7 0 -1 ; 1 3 | 8 0 -1 ; 2 4";

TEST(ResultsMat, IsToldByItsHeader) {
    const std::string header = MatHeader();
    const std::string badHeader = "202 ResultsReader: Invalid MAT file header.";
    const std::string noNewline = "201 ResultsTxt: Unable to read 'PATH' results file.";
    EXPECT_EQ(OutcomeOfBytes(header), "0x0+0");
    EXPECT_EQ(OutcomeOfBytes(header + both), bothRead);
    EXPECT_EQ(OutcomeOfBytes(MatHeader({"\1\0MI", 4}) + both), badHeader);
    for (const char* const version : {"\1\1IM", "\0\2IM", "\0\1MI", "\0\1IN"}) {
        EXPECT_EQ(OutcomeOfBytes(MatHeader({version, 4})), badHeader);
    }
    EXPECT_EQ(OutcomeOfBytes(header.substr(0, 127)), noNewline);
    for (std::size_t i = 0; i < 19; ++i) {
        std::string changed = header + both;
        changed[i] = '?';
        EXPECT_EQ(OutcomeOfBytes(changed), noNewline);
    }
    EXPECT_EQ(Outcome("/nonexistent/results.mat"), "200 ResultsReader: Unable to open 'PATH' results file.");
    EXPECT_EQ(Outcome(support::ScratchDirectory()), unreadable);
}

TEST(ResultsMat, ReadsOrRefusesMatrices) {
    MatMatrix named = values;
    const auto withName = [&](const std::string& name) {
        named.name = name;
        return named.Bytes() + indices.Bytes();
    };
    const std::string wide(4096, 'n');
    std::vector<double> tenColumns(10);
    Check({
        {indices.Bytes() + values.Bytes(), bothRead},
        {both + values.Bytes(), tooManyVariables},
        {values.Bytes() + values.Bytes(), tooManyVariables},
        {indices.Bytes() + indices.Bytes(), tooManyVariables},
        {values.Bytes(), rowCounts},
        {indices.Bytes(), rowCounts},
        {Values(1, {1, 2, 3, 4, 5}).Bytes() + Indices(3, std::vector<short>(12)).Bytes(), rowCounts},
        {Values(10, tenColumns).Bytes(), "306 ResultsMat: Too many columns defined in MatLab file."},
        {Values(9, std::vector<double>(9)).Bytes() + Indices(4, {1, 2, 3, 4}).Bytes(),
         "1x9+4 | 1 2 3 4 ; 0 0 0 0 0 0 0 0 0"},
        {Values(2, {}).Bytes(), "0x2+0"},
        {Indices(3, {}).Bytes(), "0x0+3"},
        {Values(0, {}).Bytes(), BadData("v")},
        {Indices(2, {1, 2}).Bytes(), badFlags},
        {Indices(0, {}).Bytes(), badFlags},
        // Names: up to four bytes in the small form, then padded to four bytes.
        {withName(""), bothRead},
        {withName("four"), bothRead},
        {withName("fives"), bothRead},
        {withName("twelve bytes"), bothRead},
        {withName(wide.substr(1)), bothRead},
        {withName(wide), longName},
        {values.Bytes({{1, 0}}), BadWhole("v")},
        // What pads a name is no part of it.
        {values.Bytes({{1, 0}}).replace(45, 3, "xyz"), BadWhole("v")},
        {withName("fives").replace(4, 1, "?").replace(53, 3, "xyz"), BadWhole("fives")},
        {withName(wide.substr(1)).replace(4, 1, "?"), BadWhole(wide.substr(0, 512))},
        // The boxes that 32 bits cannot number, and one that they can.
        {Values(1, {1, 2}).Bytes() + Indices(3, {-32768, 32767, -32768, 32767, 0, 0}).Bytes(), outOfMemory},
        {Values(1, {1, 2}).Bytes() + Indices(3, {-32768, 32767, -32768, 32767, -32768, 32767}).Bytes(), outOfMemory},
        {Values(1, {1, 2}).Bytes() + Indices(3, {-32768, 32767, -32767, 32767, 0, 0}).Bytes(),
         "2x1+3 | -32768 -32767 0 ; 1 | 32767 32767 0 ; 2"},
    });
}

TEST(ResultsMat, ChecksEveryField) {
    std::vector<Case> cases;
    const auto with = [&](std::size_t word, std::uint32_t value, const std::string& outcome) {
        cases.push_back({values.Bytes({{word, value}}) + indices.Bytes(), outcome});
    };
    for (const std::uint32_t type : {0U, 1U, 9U, 13U, 15U, 0x0E000000U}) with(0, type, nonMatrix);
    for (std::size_t word = 2; word < 8; ++word) {
        for (const std::uint32_t value : {1U, 4U, 7U, 12U, 0x0806U, 0xFFFFFFFFU}) with(word, value, badFlags);
    }
    for (const std::uint32_t whole : {0U, 79U, 81U, 88U, 0xFFFFFFFFU}) with(1, whole, BadWhole("v"));
    for (const std::uint32_t type : {0U, 1U, 2U, 4U, 5U, 7U, 10U, 14U, 0x10009U}) with(10, type, badData);
    // Of a product of rows, columns and element size that wraps 32 or 64 bits nothing is believed.
    for (const std::uint32_t rows : {0U, 1U, 3U, 0x20000002U, 0x80000002U, 0xFFFFFFFFU}) with(8, rows, BadData("v"));
    for (const std::uint32_t columns : {0U, 1U, 3U, 10U, 0x20000002U, 0xFFFFFFFFU}) with(9, columns, BadData("v"));
    for (const std::uint32_t size : {0U, 31U, 33U, 40U, 0xFFFFFFE0U}) with(11, size, BadData("v"));
    cases.push_back({values.Bytes({{8, 0xFFFFFFFFU}, {9, 0xFFFFFFFFU}, {11, 8}}), BadData("v")});
    cases.push_back({values.Bytes({{8, 0x80000000U}, {9, 0x40000000U}, {11, 0}}), BadData("v")});
    cases.push_back({indices.Bytes({{1, 2}, {8, 715827875U}, {11, 4294967250U}}), BadWhole("i")});
    // Sizes that agree with each other, but that the file does not hold.
    cases.push_back({values.Bytes({{1, 48 + 48}, {8, 3}, {11, 48}}) + std::string(8, '\0'), unreadable});
    cases.push_back({values.Bytes({{1, 0x80000030U}, {8, 0x08000000U}, {11, 0x80000000U}}), unreadable});
    cases.push_back({indices.Bytes({{1, 4200000048U}, {8, 700000000U}, {11, 4200000000U}}), unreadable});
    cases.push_back({Values(9, std::vector<double>(9)).Bytes({{1, 48 + 72 * 8}, {8, 8}, {11, 72 * 8}}), unreadable});
    // The element's name: its tag stands after the first ten words.
    const auto name = [&](const std::vector<std::uint32_t>& tag, const std::string& outcome) {
        cases.push_back({values.Bytes().replace(40, tag.size() * 4, MatMatrix::Words(tag)), outcome});
    };
    name({2}, noName);
    name({0}, noName);
    name({0x00010002}, noName);
    name({1, 4096}, longName);
    name({1, 4093}, unreadable);
    name({1, 0xFFFFFFFFU}, longName);
    name({1, 0xFFFFFFFDU}, longName);
    name({0xFFFF0001U}, rowCounts);
    Check(cases);
}

TEST(ResultsMat, NamesPaddedToEightBytesMayNotBeRead) {
    // What the format's own padding makes of a name of 9 to 12 bytes: four more bytes before the data tag.
    MatMatrix matrix = values;
    matrix.name = "ninebytes" + std::string(7, '\0');
    std::string bytes = matrix.Bytes();
    bytes.replace(44, 4, MatMatrix::Words({9}));
    Check({{bytes, badData}});
}

// The programs that wrote these files, or the scripts that had them written, lie beside them.
TEST(ResultsMat, ReadsOrRefusesRealFiles) {
    const std::pair<std::string, std::string> cases[] = {
        // 16-bit data in a matrix of class double is what the reader asks for, but eight bytes of it at a time.
        {"matio-four-rows", "4x2+3 | 1 2 3 ; 1.5 -2 | 4 5 6 ; 3 4.25 | 7 8 -9 ; 5 6 | 10 11 12 ; 7 8"},
        {"matio-padded", BadWhole("i")},
        {"matio-int16-class", badFlags},
        // The values alone are fine.
        {"scipy-values", rowCounts},
        {"scipy-values-and-int16-class", badFlags},
        {"scipy-compressed", nonMatrix},
        {"scipy-single", badFlags},
        {"scipy-int32", badFlags},
        {"scipy-complex", badFlags},
        {"scipy-three-dimensions", badFlags},
        {"scipy-nine-byte-name", badData},
        {"scipy-no-variables", "0x0+0"},
        // The second word of its array flags is 1.
        {"octave-doubles", badFlags},
        {"octave-integers-as-doubles", badFlags},
        {"octave-int16", badFlags},
        {"octave-compressed", nonMatrix},
    };
    for (const auto& [name, outcome] : cases) {
        EXPECT_EQ(Outcome(ORVALO_TEST_DATA "/results/" + name + ".mat"), outcome) << name;
    }
}

#if !defined(_WIN32)

TEST(ResultsMat, RefusesDataFromAPipe) {
    const std::string path = support::WriteFile("results", MatHeader() + both);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(("cat " + path).c_str(), "r"), ::pclose);
    EXPECT_EQ(Outcome("/dev/fd/" + std::to_string(::fileno(pipe.get()))), unreadable);
}

#endif

}  // namespace
}  // namespace orvalo
