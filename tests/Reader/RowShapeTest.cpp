#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Reader/RowShape.h"

namespace orvalo {
namespace {

using Shape = RowShape<3>;

/// A row of three numbers, with the gap before it and whatever is after it.
struct Row {
    explicit Row(const std::string& text, char separator = ' ')
        : padded("????" + text + std::string(80, '7')),
          start(padded.data() + 4),
          end(start + text.size()),
          masks(ClassifyRows(start, text.size(), separator)),
          gap(RowGapAt(start, separator)),
          shape(FindRowShape<3>(masks, gap)) {}

    std::string padded;
    const char* start;
    const char* end;
    RowMasks masks;
    RowGap gap;
    Shape shape;
};

std::string ToText(const RowStep& step) {
    return std::to_string(step.bytes) + " bytes " + std::to_string(step.lines) + " lines " +
           (step.columnMask == 0 ? "to " : "by ") + std::to_string(step.columns);
}

/// What passing the row adds, and its numbers: found at once, and then also byte by byte.
std::string ToText(const Row& row) {
    if (row.shape.finding == Shape::Finding::BeyondWindow) return "beyond";
    if (row.shape.finding == Shape::Finding::Irregular) return "irregular";
    std::uint64_t numbers = 0;
    const RowStep step = ReadRowByByte<3>(row.start, row.end, numbers);
    EXPECT_EQ(ToText(step), ToText(row.shape.Step())) << row.padded;
    std::array<std::uint32_t, 4> words{};
    for (std::size_t i = 0; i < 3; ++i) words[i] = LoadFour(row.start + row.shape.ends[i] - 4);
    EXPECT_EQ(simd::FourNumbers(words, row.shape.digits), numbers) << row.padded;
    std::string text = ToText(step) + ':';
    for (; numbers != 0; numbers >>= 16U) text += ' ' + std::to_string(numbers & 0xFFFFU);
    return text;
}

TEST(RowShape, IsFoundFromTheBits) {
    const struct {
        std::string text;
        const char* expected;
        char separator = ' ';
    } table[] = {
        {"\n1 20 3000\n", "10 bytes 1 lines to 5: 1 20 3000"},
        {"\r\n9999 1 1\r\n", "10 bytes 1 lines to 5: 9999 1 1"},
        {" 1 2 3 4", "6 bytes 0 lines by 6: 1 2 3"},
        {"1 2 3\t", "5 bytes 0 lines by 5: 1 2 3"},
        {",1,2,3,", "6 bytes 0 lines by 6: 1 2 3", ','},
        {"\n1\t2\t3x", "6 bytes 1 lines to 5: 1 2 3", '\t'},
        {"\n7 8 9\xB9", "6 bytes 1 lines to 5: 7 8 9"},
        // Five digits; two gaps; gaps of other bytes; none.
        {"\n12345 1 1\n", "irregular"},
        {"\n1 12345 1\n", "irregular"},
        {"\n1  2 3\n", "irregular"},
        {"\n\n1 2 3\n", "irregular"},
        {"\r1 2 3\n", "irregular"},
        {"\n 1 2 3\n", "irregular"},
        {"\n1,2 3\n", "irregular"},
        {"\n1 2\n3\n", "irregular"},
        {"\n1 2 -3\n", "irregular"},
        {"x1 2 3\n", "irregular"},
        // What ends the last number must be there.
        {"\n1 2 3", "beyond"},
        {"\n1 2", "beyond"},
        {"\n", "beyond"},
        {"", "beyond"},
    };
    for (const auto& row : table) {
        EXPECT_EQ(ToText(Row(row.text, row.separator)), row.expected) << testing::PrintToString(row.text);
    }
    // Nothing after the window is seen, and no row is too long for it.
    const std::string row = "\r\n1000 2000 3000\r\n";
    for (std::uint64_t before = 0; before < 64; ++before) {
        const Row window(std::string(before, ' ') + row);
        const Shape shape = FindRowShape<3>(window.masks.From(before), RowGap::CarriageReturnLineFeed);
        EXPECT_EQ(shape.finding, before < 48 ? Shape::Finding::Found : Shape::Finding::BeyondWindow) << before;
    }
}

// To fit a shape is to have the same one.
TEST(RowShape, FitsRowsOfTheSameShapeAlone) {
    std::mt19937 random(20241121);
    const auto oneOf = [&](std::string_view choices) { return std::string(1, choices[random() % choices.size()]); };
    const auto next = [&] {
        std::string text = random() % 8 == 0 ? "\r\n" : oneOf("\n\n\n\n 5");
        for (int i = 0; i < 3; ++i) {
            for (auto digits = random() % 16 == 0 ? random() % 6 : 1 + random() % 2; digits > 0; --digits)
                text += oneOf("059");
            text += i == 2 ? oneOf("\n\r x.\xB5") : random() % 16 == 0 ? oneOf("\t,\n.x") : " ";
        }
        return Row(text);
    };
    unsigned int fitting = 0;
    Row known = next();
    for (int i = 0; i < 100000 && !testing::Test::HasFailure(); ++i) {
        const Row row = next();
        const bool found = row.shape.finding == Shape::Finding::Found;
        if (found) ToText(row);
        const bool same = found && known.shape.finding == Shape::Finding::Found && row.gap == known.gap &&
                          row.shape.ends == known.shape.ends;
        EXPECT_EQ(known.shape.Fits(row.masks, row.gap), same) << known.padded << row.padded;
        fitting += same ? 1 : 0;
        if (random() % 8 == 0) known = next();
    }
    EXPECT_GT(fitting, 2000U);
}

}  // namespace
}  // namespace orvalo
