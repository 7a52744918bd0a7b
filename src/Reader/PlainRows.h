#pragma once

#include <array>
#include <cstdint>

#include "Common/Bytes.h"
#include "Common/Simd.h"
#include "Reader/BulkCursor.h"
#include "Reader/RowMasks.h"
#include "Reader/RowShape.h"
#include "Reader/RowStep.h"

namespace orvalo {

/// Reads bulk rows of the common kind, as programs write them: `numbers` (3 or 4) natural numbers of one to four
/// digits, one blank between them, the same throughout, and a line end or that blank between rows. Rows with other
/// blanks or leading zeros are read too, byte by byte. Whatever is not surely a row within its limits, all of it in
/// the buffer, is left for Lexer::ReadNatural, which reads every row and alone raises errors: between them the two
/// count alike.
///
/// A window of 64 bytes is classified at once, and the rows in it are taken from the bits, so that one row need not
/// wait for the length of the row before it. In a grid most rows have the shape of the row before them, which takes one
/// comparison to see.
///
/// What Look does is inlined by force: left to its own limits, the compiler keeps the members in memory, and what the
/// cursor moves by is on the way from each row to the next.
template <unsigned int numbers>
class PlainRows {
public:
    explicit PlainRows(const BulkCursor& cursor) : cursor_(cursor), separator_(SeparatorAt(cursor_.at)) {
        MoveWindow();
    }
    PlainRows(const PlainRows&) = delete;
    PlainRows& operator=(const PlainRows&) = delete;

    /// Whether the next row is a plain one; `row` is then what it holds.
    [[gnu::always_inline]] bool Look() {
        if (rowsByByte_ > 0 && --rowsByByte_ > 0) return LookByByte();
        if (Passed() + step_.bytes >= RowMasks::size) MoveWindow();
        if (!shape_.Fits(Ahead(), Gap()) && !FindShape()) return LookByByte();
        Convert();
        return true;
    }

    /// Passes over the row that was looked at.
    void Accept() { cursor_.Pass(step_); }

    /// Reads the number after the row that was accepted last, if it is one of the common kind.
    bool TakeNumber(double& value) { return cursor_.TakeNumber(value); }

    /// Past what was accepted and taken.
    const BulkCursor& Cursor() const { return cursor_; }

    /// The numbers of the row that was looked at, 16 bits each, the first one lowest.
    std::uint64_t row = 0;

    unsigned int Field(unsigned int index) const { return static_cast<std::uint16_t>(row >> (16 * index)); }
    unsigned int Material() const requires(numbers == 4) { return static_cast<unsigned int>(row >> 48U); }

private:
    using Shape = RowShape<numbers>;

    /// The blank after the first number of the row at `p`, or a space.
    static char SeparatorAt(const char* p) {
        while (*p == '\n' || *p == '\r') ++p;
        while (IsDigit(*p)) ++p;
        return *p == '\t' || *p == ',' ? *p : ' ';
    }

    /// How much of the window the cursor has passed.
    std::uint64_t Passed() const { return static_cast<std::uint64_t>(cursor_.at - window_); }

    /// Moves the window to the cursor.
    void MoveWindow() {
        window_ = cursor_.at;
        masks_ = ClassifyRows(window_, static_cast<std::uint64_t>(cursor_.end - window_), separator_);
    }

    RowMasks Ahead() const { return masks_.From(Passed()); }
    RowGap Gap() const { return RowGapAt(cursor_.at, separator_); }

    /// Finds the shape of the next row. False where it has none, as most rows around it will then.
    [[gnu::always_inline]] bool FindShape() {
        for (;;) {
            shape_ = FindRowShape<numbers>(Ahead(), Gap());
            if (shape_.finding != Shape::Finding::BeyondWindow || Passed() == 0) break;
            MoveWindow();
        }
        if (shape_.finding != Shape::Finding::Found) {
            rowsByByte_ = 16;
            return false;
        }
        step_ = shape_.Step();
        return true;
    }

    /// As Look, for a row of any layout.
    [[gnu::always_inline]] bool LookByByte() {
        std::uint64_t read = 0;
        const RowStep step = ReadRowByByte<numbers>(cursor_.at, cursor_.end, read);
        if (step.bytes == 0) return false;
        row = read;
        step_ = step;
        return true;
    }

    void Convert() {
        std::array<std::uint32_t, 4> words{};
        // Before the first number there is always a byte more in the buffer's slack.
        for (unsigned int i = 0; i < numbers; ++i) words[i] = LoadFour(cursor_.at + shape_.ends[i] - sizeof words[i]);
        row = simd::FourNumbers(words, shape_.digits);
    }

    BulkCursor cursor_;
    char separator_;
    const char* window_ = nullptr;
    RowMasks masks_;
    Shape shape_;
    /// How the row that was looked at is passed.
    RowStep step_;
    /// How many rows are to be read byte by byte before a shape is sought again.
    unsigned int rowsByByte_ = 0;
};

}  // namespace orvalo
