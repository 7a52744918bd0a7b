#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "Common/Bytes.h"
#include "Common/DigitMask.h"
#include "Reader/BulkCursor.h"

namespace orvalo {

/// Reads bulk rows of the common kind, as programs write them: `numbers` (3 or 4) natural numbers of one to four
/// digits, one blank between them, the same throughout, and a line end or that blank between rows. Rows with other
/// blanks or leading zeros are taken too, byte by byte. Whatever is not surely a row within its limits, all of it in
/// the buffer, is left for Lexer::ReadNatural, which reads every row and alone raises errors: between them the two
/// count alike.
///
/// A window of 64 bytes is classified at once, and the rows in it are taken from the bits, so that one row need not
/// wait for the length of the row before it. In a grid most rows have the shape of the row before them, which takes one
/// comparison to see.
template <unsigned int numbers>
class PlainRows {
public:
    explicit PlainRows(Lexer& lexer) : cursor_(lexer), separator_(SeparatorAt(cursor_.at)) { Slide(); }
    PlainRows(const PlainRows&) = delete;
    PlainRows& operator=(const PlainRows&) = delete;

    /// Whether the next row is a plain one; `row` is then what it holds.
    bool Look() {
        if (Passed() + shape_.length >= windowSize) Slide();
        if (!HasShape()) return LookAfresh();
        Convert();
        return true;
    }

    /// Passes over the row that was looked at.
    void Accept() {
        cursor_.at += shape_.length;
        cursor_.line += shape_.lines;
        cursor_.column = (cursor_.column & shape_.columnKept) + shape_.columns;
    }

    /// Reads the number behind the row that was accepted last, if it is one of the common kind.
    bool TakeNumber(double& value) { return cursor_.TakeNumber(value); }

    /// Moves the lexer behind what was accepted and taken. To be called last.
    void Commit() const { cursor_.Commit(); }

    /// The numbers of the row that was looked at, 16 bits each, the first one lowest.
    std::uint64_t row = 0;

    unsigned int Field(unsigned int index) const { return static_cast<std::uint16_t>(row >> (16 * index)); }
    unsigned int Fourth() const { return static_cast<unsigned int>(row >> 48U); }

private:
    static constexpr std::uint64_t windowSize = 64;

    /// What stands before a row: nothing behind a number that took its terminator.
    enum class Gap : std::uint8_t { None, LineFeed, CarriageReturnLineFeed, Separator };

    /// What a row looks like, from the gap before it to the byte behind it.
    struct Shape {
        /// Whether other rows may have it; if not, it only tells how the row is passed: the next four fields.
        bool regular = false;
        /// Bytes of the row, the gap before it included.
        std::uint64_t length = 0;
        /// What ReadNatural makes of the row: the line feeds in it, and the column that it sets or adds to.
        std::uint64_t lines = 0;
        std::uint64_t columnKept = 0;
        std::uint64_t columns = 0;
        Gap gap = Gap::None;
        /// Which bytes are no digits, up to the one behind the row.
        std::uint64_t bits = 0;
        /// Where each number ends.
        std::array<unsigned int, numbers> ends{};
        /// Which bits of the digits count in the four bytes up to the end of each number.
        std::array<std::uint32_t, 4> digits{};
    };

    static std::uint64_t Below(std::uint64_t bit) { return (std::uint64_t{1} << bit) - 1; }

    /// How much of the window lies behind the cursor.
    std::uint64_t Passed() const { return static_cast<std::uint64_t>(cursor_.at - window_); }

    /// Moves the window to the cursor.
    void Slide() {
        window_ = cursor_.at;
        const std::uint64_t others = NonDigitMask(window_);
        const std::uint64_t digits = ~others;
        const std::uint64_t noNumberBetween = others & (others >> 1U);
        const std::uint64_t fiveDigits = digits & (digits >> 1U) & (digits >> 2U) & (digits >> 3U) & (digits >> 4U);
        irregular_ = noNumberBetween | fiveDigits | (others & ~ByteMask(window_, separator_));
        // What stands behind the end of the buffer is not in the window.
        const auto left = static_cast<std::uint64_t>(cursor_.end - window_);
        others_ = left < windowSize ? others & Below(left) : others;
    }

    /// The blank behind the first number of the row at `p`, or a space.
    static char SeparatorAt(const char* p) {
        while (*p == '\n' || *p == '\r') ++p;
        while (IsDigit(*p)) ++p;
        return *p == '\t' || *p == ',' ? *p : ' ';
    }

    Gap FindGap() const {
        if (*cursor_.at == '\n') return Gap::LineFeed;
        if (*cursor_.at == separator_) return Gap::Separator;
        return *cursor_.at == '\r' && cursor_.at[1] == '\n' ? Gap::CarriageReturnLineFeed : Gap::None;
    }

    static unsigned int Length(Gap gap) { return gap == Gap::None ? 0 : gap == Gap::CarriageReturnLineFeed ? 2 : 1; }

    /// Whether the next row is in the window and has the shape that was found last.
    bool HasShape() const {
        const std::uint64_t passed = Passed();
        if (!shape_.regular || passed >= windowSize || FindGap() != shape_.gap) return false;
        // The byte behind the row belongs to its shape; what it is does not matter.
        const std::uint64_t within = Below(shape_.length) & ~Below(Length(shape_.gap));
        const std::uint64_t wrongShape = ((others_ >> passed) ^ shape_.bits) & (2 * Below(shape_.length) + 1);
        return (wrongShape | ((irregular_ >> passed) & within)) == 0;
    }

    /// Finds the shape of the next row, if it is a plain one and in the window.
    bool FindShape() {
        shape_.regular = false;
        const std::uint64_t passed = Passed();
        outOfWindow_ = passed >= windowSize;
        if (outOfWindow_) return false;
        const Gap gap = FindGap();
        const std::uint64_t others = others_ >> passed;
        std::uint64_t rest = others & ~Below(Length(gap));
        unsigned int start = Length(gap);
        for (unsigned int i = 0; i < numbers; ++i) {
            outOfWindow_ = rest == 0;
            if (outOfWindow_) return false;
            const auto end = static_cast<unsigned int>(std::countr_zero(rest));
            rest &= rest - 1;
            if (end == start || end - start > 4) return false;
            shape_.ends[i] = end;
            shape_.digits[i] = 0x0F0F0F0FU << (32U - 8U * (end - start));
            start = end + 1;
        }
        const unsigned int length = shape_.ends[numbers - 1];
        if (((irregular_ >> passed) & Below(length) & ~Below(Length(gap))) != 0) return false;
        // A blank and a first digit are counted for each number, nothing for the digits after it.
        const std::uint64_t newLine = gap == Gap::LineFeed || gap == Gap::CarriageReturnLineFeed ? 1 : 0;
        shape_.lines = newLine;
        shape_.columnKept = newLine - 1;
        shape_.columns = 2 * numbers - (gap == Gap::Separator ? 0 : 1);
        shape_.regular = true;
        shape_.length = length;
        shape_.gap = gap;
        shape_.bits = others & (2 * Below(length) + 1);
        return true;
    }

    /// As Look, for a row that does not have the shape of the row before it.
    bool LookAfresh() {
        if (looseRows_ > 0) {
            if (--looseRows_ > 0) return LookLoosely();
            Slide();
        }
        while (!FindShape()) {
            if (!outOfWindow_ || cursor_.at == window_) {
                // Where one row is irregular, so are those around it.
                looseRows_ = 16;
                return LookLoosely();
            }
            Slide();
        }
        Convert();
        return true;
    }

    /// As Look, for a row of any layout.
    bool LookLoosely() {
        constexpr unsigned int largest = 32767;
        const char* p = cursor_.at;
        std::uint64_t lines = 0;
        std::uint64_t columns = 0;
        row = 0;
        for (unsigned int i = 0; i < numbers; ++i) {
            for (;; ++p) {
                ++columns;
                if (*p == '\n') {
                    ++lines;
                    columns = 0;
                } else if (*p != '\r' && lexer::classOf[static_cast<unsigned char>(*p)] != lexer::Blank) {
                    break;
                }
            }
            if (!IsDigit(*p)) return false;
            unsigned int value = 0;
            for (; IsDigit(*p) && value <= largest; ++p) value = value * 10 + DigitValue(*p);
            if (value > largest || p >= cursor_.end) return false;
            row |= std::uint64_t{value} << (16 * i);
        }
        // The window is of no use until a shape is sought again; there it does not call for another one.
        window_ = p;
        shape_.regular = false;
        shape_.length = static_cast<std::uint64_t>(p - cursor_.at);
        shape_.lines = lines;
        shape_.columnKept = lines != 0 ? 0 : ~std::uint64_t{0};
        shape_.columns = columns;
        return true;
    }

    /// The four bytes up to the end of a number; before a short one there is always a byte more in the buffer's slack.
    std::uint32_t Digits(unsigned int index) const {
        return LoadFour(cursor_.at + shape_.ends[index] - sizeof(std::uint32_t));
    }

    /// Converts all numbers at once: digits to pairs, pairs to numbers.
    void Convert() {
        std::array<std::uint32_t, 4> digits = {Digits(0), Digits(1), Digits(2), 0};
        if constexpr (numbers == 4) digits[3] = Digits(3);
#if defined(__SSE2__)
        const __m128i mask = _mm_loadu_si128(reinterpret_cast<const __m128i*>(shape_.digits.data()));
        const __m128i bytes = _mm_and_si128(_mm_set_epi32(static_cast<int>(digits[3]), static_cast<int>(digits[2]),
                                                          static_cast<int>(digits[1]), static_cast<int>(digits[0])),
                                            mask);
        const __m128i tens = _mm_mullo_epi16(bytes, _mm_set1_epi16(10));
        const __m128i pairs = _mm_and_si128(_mm_add_epi16(tens, _mm_srli_epi16(bytes, 8)), _mm_set1_epi16(0xFF));
        const __m128i values = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
        row = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_packs_epi32(values, values)));
#else
        row = 0;
        for (unsigned int i = 0; i < numbers; ++i) {
            std::uint32_t v = digits[i] & shape_.digits[i];
            v = (v * 10 + (v >> 8U)) & 0x00FF00FFU;
            row |= std::uint64_t{static_cast<std::uint16_t>(v * 100 + (v >> 16U))} << (16 * i);
        }
#endif
    }

    BulkCursor cursor_;
    char separator_;
    const char* window_ = nullptr;
    // Which bytes of the window are no digits, and where a plain row cannot be.
    std::uint64_t others_ = 0;
    std::uint64_t irregular_ = 0;
    bool outOfWindow_ = false;
    Shape shape_;
    // How many rows are to be looked at without seeking a shape.
    unsigned int looseRows_ = 0;
};

}  // namespace orvalo
