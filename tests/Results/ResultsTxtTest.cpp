#include <gmock/gmock.h>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Results/ResultsFiles.h"
#include "Results/RowBlocks.h"

namespace orvalo {
namespace {

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

TEST(ResultsTxt, ReadsOrRefuses) {
    const std::string unreadable = "201 ResultsTxt: Unable to read 'PATH' results file.";
    const auto tooMany = [](int line) {
        return "307 ResultsTxt: Too many columns provided (line " + std::to_string(line) + ").";
    };
    const auto notEnough = [](int missing, int line) {
        return "308 ResultsTxt: Not enough columns provided (" + std::to_string(missing) + " columns missing in line " +
               std::to_string(line) + ").";
    };
    const std::string indexed = "x\ty\tz\tf\tu\n";
    using namespace std::string_literals;
    const std::pair<std::string, std::string> cases[] = {
        {"x\ty\tz\tf\tux\tuy\n3\t4\t5\t0\t1.5\t-2e-3\n", "1x2+4 | 3 4 5 0 ; 1.5 -0.002"},
        {"", "0x0+0"},
        // Headers.
        {"u", unreadable},
        {"u\0\n1\n"s, unreadable},
        {"x\ty\tz\tf\n", unreadable},
        {"x\ty\tz\tf\n1\t2\t3\t4\n", unreadable},
        {Repeated("u\t", 32767) + "\n", "0x32768+0"},
        {Repeated("u\t", 32767) + "u\n", unreadable},
        {"\n", "0x1+0"},
        {"\t\n", "0x2+0"},
        {"x\ty\tz\n1\t2\t3\n", "1x3+0 | ; 1 2 3"},
        {"X\tY\tZ\tF\n1\t2\t3\t4\n", "1x4+0 | ; 1 2 3 4"},
        {"x\ty\tz\tf \tu\n", "0x5+0"},
        {"u\tx\ty\tz\tf\n", "0x5+0"},
        {"x\ty\tz\tf\t\n", "0x1+4"},
        // Line ends.
        {"u\r\n1\r\n2\r\n", "2x1+0 | ; 1 | ; 2"},
        {"u\n1\n2", "2x1+0 | ; 1 | ; 2"},
        {"u\n1\r", tooMany(2)},
        {"u\n1\r\r\n", tooMany(2)},
        {"u\tv\n1\r2\n", "1x2+0 | ; 1 2"},
        {"u\n\n", "1x1+0 | ; 0"},
        {"u\n\r\n", "1x1+0 | ; 0"},
        {"u\tv\n\n", notEnough(1, 2)},
        {"u\n1\0 2\n3\n"s, "2x1+0 | ; 1 | ; 3"},
        {"u\n\0\n"s, notEnough(1, 2)},
        // Numbers of columns.
        {"u\n1\t2\n", tooMany(2)},
        {"u\n1\n2\n3\t4\n", tooMany(4)},
        {"a\tb\tc\td\te\n1\t2\t3\n", notEnough(2, 2)},
        {indexed + "1\t2\n", notEnough(3, 2)},
        {indexed + "1\t2\t3\t4\n", notEnough(1, 2)},
        {indexed + "1\t2\t3\t4", unreadable},
        {indexed + "1", unreadable},
        {indexed + "1\0\n"s, unreadable},
        {indexed + "1\t2\t3\t4\t5", "1x1+4 | 1 2 3 4 ; 5"},
        // Separators.
        {"u\tv\n1\t\t\t2\t\t\n", "1x2+0 | ; 1 2"},
        {"u\tv\n1 2\n", "1x2+0 | ; 1 2"},
        {"u\n1 \n", tooMany(2)},
        {"u\n\t1\n", "1x1+0 | ; 1"},
        {"u\tv\n1,2\n", tooMany(2)},
        {"u\tv\n1-2\n", "1x2+0 | ; 1 -2"},
        {"u\nabc\n", tooMany(2)},
        {"u\tv\n\tx\t1\n", tooMany(2)},
        // Values.
        {"u\tv\tw\n0x1p3\tinf\t-infinity\n", "1x3+0 | ; 8 inf -inf"},
        {"u\tv\n1e400\t-1e-400\n", "1x2+0 | ; inf -0"},
        {"u\n1e\n", tooMany(2)},
        // Indices: digits that wrap at 16 bits; anything else is left to the next column.
        {indexed + "32767\t32768\t65535\t65536\t1\n", "1x1+4 | 32767 -32768 -1 0 ; 1"},
        {indexed + "4294967297\t18446744073709551618\t007\t0\t1\n", "1x1+4 | 1 2 7 0 ; 1"},
        {indexed + "-5\n", "1x1+4 | 0 0 0 0 ; -5"},
        {indexed + "-5\t6\n", tooMany(2)},
        {indexed + "1.5\n", "1x1+4 | 1 0 0 0 ; 0.5"},
        {indexed + "\t2\t3\t4\t5\n", "1x1+4 | 0 2 3 4 ; 5"},
        {indexed + " 1\t2\t3\t4\t5\n", tooMany(2)},
        // Lines of 65,535 characters and more.
        {"u\tv\n1\t" + Repeated("0", 65531) + "2\n", "1x2+0 | ; 1 2"},
        {"u\tv\n1\t" + Repeated("0", 65531) + "2\r\n", "1x2+0 | ; 1 2"},
        {"u\tv\n1\t" + Repeated("0", 65532) + "2\n", notEnough(1, 3)},
        {"u\tv\n1\t" + Repeated("0", 65532) + "2\t3\t4\n5\t6\n", "3x2+0 | ; 1 2 | ; 3 4 | ; 5 6"},
        {"u\tv\n1\t" + Repeated("0", 65532) + "23\t4\n", "2x2+0 | ; 1 2 | ; 3 4"},
        // Without index columns every row takes a block.
        {"u\n" + Repeated("1\n", 4096), "4096x1+0"},
        {"u\n" + Repeated("1\n", 4097), "102 ResultsTxt: Out of memory."},
        {"u\n" + Repeated("1\n", 4096) + "1\t2\n", tooMany(4098)},
        {indexed + Repeated("1\t1\t1\t1\t1\n", 140000), "140000x1+4"},
        // Boxes too wide for what 32 bits number, and the widest that is not.
        {indexed + "0\t0\t0\t0\t1\n65535\t65535\t65535\t0\t2\n32768\t32768\t32768\t0\t3\n32767\t32767\t32767\t0\t4\n",
         "102 ResultsTxt: Out of memory."},
        {indexed + "32768\t32768\t0\t0\t3\n32767\t32766\t0\t0\t4\n",
         "2x1+4 | -32768 -32768 0 0 ; 3 | 32767 32766 0 0 ; 4"},
    };
    for (const auto& [text, outcome] : cases) EXPECT_EQ(OutcomeOfBytes(text), outcome) << text.substr(0, 80);
}

/// Something that takes a little less than a third of a block, and no memory.
struct Third {
    Third() = default;
    Third(const Third&) = default;
    Third& operator=(const Third&) { return *this; }
    char bytes[349000];
};

TEST(ResultsTxt, HoldsAsManyRowsAsFitInto4096BlocksWhole) {
    RowBlocks<Third> blocks;
    blocks.SetColumns(1);
    int rows = 0;
    while (blocks.AppendRow()) ++rows;
    EXPECT_EQ(rows, 3 * 4096);
}

TEST(ResultsTxt, KeepsNamesAndPath) {
    const std::string path = support::WriteFile("results", "x\ty\tz\tf\tux\t\tuz \n");
    const auto results = Load(path);
    EXPECT_EQ(results->FileName(), path);
    const auto& text = dynamic_cast<const ResultsTxt&>(*results);
    EXPECT_THAT(text.ColumnNames(), testing::ElementsAre("x", "y", "z", "f", "ux", "", "uz "));
}

TEST(ResultsTxt, FindsRowsInEveryBlock) {
    std::string text = "x\ty\tz\tf\tu\tv\tw\n";
    for (int row = 0; row < 300000; ++row) {
        text += std::to_string(row % 1000) + "\t" + std::to_string(row / 1000) + "\t0\t" + std::to_string(row % 7) +
                "\t" + std::to_string(row) + "\t-" + std::to_string(row) + "\t1\n";
    }
    const auto results = LoadBytes(text);
    for (unsigned int row = 0; row < 300000; ++row) {
        const auto x = static_cast<int>(row % 1000);
        const auto y = static_cast<int>(row / 1000);
        ASSERT_EQ(results->ExValueGet(0, row), row);
        ASSERT_EQ(results->ExValueGet(1, x, y, 0), -static_cast<double>(row));
        ASSERT_EQ(results->IndexGet(3, row), static_cast<int>(row % 7));
    }
}

}  // namespace
}  // namespace orvalo
