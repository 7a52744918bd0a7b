#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "Common/DigitMask.h"
#include "Reader/LexerFile.h"

namespace orvalo {

/// Reads bulk rows of the common kind, as programs write them: `numbers` natural numbers of one to four digits, a
/// single blank between them, on a line of their own. Whatever is not surely such a row, all of it in the buffer, is
/// left for Lexer::ReadNatural, which reads every row and alone raises errors: between them the two count alike.
///
/// A window of 64 bytes is classified at once, and the rows in it are taken from the bits, so that one row need not
/// wait for the length of the row before it.
template <unsigned int numbers>
class PlainRows {
public:
    explicit PlainRows(LexerFile& file) : file_(file), window_(file.cursor), line_(file.line), column_(file.column) {
        Classify();
    }
    PlainRows(const PlainRows&) = delete;
    PlainRows& operator=(const PlainRows&) = delete;

    /// Moves the file behind the rows that were accepted. To be called last.
    void Commit() {
        file_.cursor = window_ + at_;
        file_.line = line_;
        file_.column = column_;
    }

    /// Whether the next row is a plain one; `values` is then what it holds.
    bool Look() {
        while (!LookInWindow()) {
            if (!outOfWindow_ || at_ == 0) return false;
            window_ += at_;
            at_ = 0;
            Classify();
        }
        return true;
    }

    /// Passes over the row that was looked at.
    void Accept() {
        // As ReadNatural counts: a blank and a first digit for each number, nothing for the digits after it.
        constexpr unsigned int counted = 2 * numbers - 1;
        line_ += lineFeeds_;
        column_ = (lineFeeds_ != 0 ? 0 : column_) + counted;
        at_ = rowEnd_;
        rest_ = restBehind_;
    }

    std::array<unsigned int, numbers> values{};

private:
    void Classify() {
        rest_ = NonDigitMask(window_);
        const std::uint64_t digits = ~rest_;
        const std::uint64_t noNumberBetween = rest_ & (rest_ >> 1U);
        const std::uint64_t fiveDigits = digits & (digits >> 1U) & (digits >> 2U) & (digits >> 3U) & (digits >> 4U);
        irregular_ = noNumberBetween | fiveDigits;
    }

    bool LookInWindow() {
        const char* const gap = window_ + at_;
        std::uint64_t rest = rest_;
        unsigned int start = at_;
        lineFeeds_ = 0;
        if (*gap == '\n') {
            start += 1;
            rest &= rest - 1;
            lineFeeds_ = 1;
        } else if (*gap == '\r' && gap[1] == '\n') {
            start += 2;
            rest &= rest - 1;
            rest &= rest - 1;
            lineFeeds_ = 1;
        }
        // Where each number ends.
        std::array<unsigned int, numbers> ends;
        for (unsigned int i = 0; i < numbers; ++i) {
            outOfWindow_ = rest == 0;
            if (outOfWindow_) return false;
            ends[i] = static_cast<unsigned int>(std::countr_zero(rest));
            restBehind_ = rest;
            rest &= rest - 1;
        }
        rowEnd_ = ends[numbers - 1];
        const std::uint64_t row = (std::uint64_t{1} << rowEnd_) - (std::uint64_t{1} << start);
        if ((irregular_ & row) != 0 || ends[0] == start || window_ + rowEnd_ >= file_.end) return false;
        if (!SeparatedByBlanks(ends)) return false;
        Convert(start, ends);
        return true;
    }

    bool SeparatedByBlanks(const std::array<unsigned int, numbers>& ends) const {
        bool spaces = true;
        bool blanks = true;
        for (unsigned int i = 0; i + 1 < numbers; ++i) spaces &= window_[ends[i]] == ' ';
        if (spaces) return true;
        for (unsigned int i = 0; i + 1 < numbers; ++i) {
            const char c = window_[ends[i]];
            blanks &= c == ' ' || c == '\t' || c == ',';
        }
        return blanks;
    }

    /// The digits of one number, right-aligned in four bytes.
    std::uint64_t Digits(unsigned int start, unsigned int end) const {
        std::uint32_t word;
        std::memcpy(&word, window_ + start, sizeof word);
        return (word & 0x0F0F0F0FU) << (32U - 8U * (end - start));
    }

    /// Converts two numbers at a time, each in one half of a word.
    void Convert(unsigned int start, const std::array<unsigned int, numbers>& ends) {
        for (unsigned int i = 0; i < numbers; i += 2) {
            const unsigned int first = i == 0 ? start : ends[i - 1] + 1;
            std::uint64_t pair = Digits(first, ends[i]);
            if (i + 1 < numbers) pair |= Digits(ends[i] + 1, ends[i + 1]) << 32U;
            pair = (pair * 10 + (pair >> 8U)) & 0x00FF00FF00FF00FFU;
            pair = (pair * 100 + (pair >> 16U)) & 0x0000FFFF0000FFFFU;
            values[i] = static_cast<std::uint32_t>(pair);
            if (i + 1 < numbers) values[i + 1] = static_cast<std::uint32_t>(pair >> 32U);
        }
    }

    LexerFile& file_;
    const char* window_;
    unsigned int at_ = 0;
    // The bytes of the window from `at_` on that are no digits, and where a plain row cannot be.
    std::uint64_t rest_ = 0;
    std::uint64_t irregular_ = 0;
    // Of the row that was looked at.
    std::uint64_t restBehind_ = 0;
    unsigned int rowEnd_ = 0;
    unsigned int lineFeeds_ = 0;
    bool outOfWindow_ = false;

    std::uint64_t line_;
    std::uint64_t column_;
};

}  // namespace orvalo
