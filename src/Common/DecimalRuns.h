#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvalo {

/// The form of a number as a program writes it by one format: digits with a point among them, without or with an
/// exponent of two digits, at most 15 bytes after the sign.
struct DecimalShape {
    /// Of no number.
    DecimalShape() = default;
    /// Of the number in [first, stop), or of none.
    DecimalShape(const char* first, const char* stop);

    /// Without the sign; 0 for no number.
    unsigned int length = 0;
    /// Which of the bytes are digits; the lowest bit is the first byte after the sign.
    unsigned int digits = 0;
    unsigned int point = 0;
    /// Where the letter of the exponent stands; `length` where there is none.
    unsigned int exponent = 0;
    /// How many digits follow the point.
    int fraction = 0;
    /// Which byte each of 16 digits comes from, the last digit last; 128 for zeros before the first.
    std::array<unsigned char, 16> order{};
};

/// Reads numbers separated by tabs, of which most have the form of the one before: all digits of such a number are
/// found and converted at once, with instructions that not every processor has. Others, and all where it lacks them,
/// are left to FastDecimal, which gives the same values.
class DecimalRuns {
public:
    /// Reads up to `count` numbers from `p` on, which moves to the end of the last one. Returns how many. 16 bytes must
    /// be readable from `end` on, and `*end` be no part of a number.
    std::size_t Read(const char*& p, const char* end, double* values, std::size_t count) {
        if (read_ == nullptr || shape_.length == 0 || count == 0) return 0;
        const std::size_t read = read_(shape_, p, end, values, count);
        run_ += read;
        return read;
    }

    /// Takes the form of a number that was left, in [first, stop), for that of the next ones. Where forms change all
    /// the time, that is done less and less often.
    void Learn(const char* first, const char* stop) {
        if (read_ == nullptr || pause_-- > 0) return;
        constexpr std::size_t enough = 16;
        wait_ = run_ >= enough ? 0 : wait_ < 1024 ? 2 * wait_ + 4 : wait_;
        pause_ = wait_;
        run_ = 0;
        shape_ = DecimalShape(first, stop);
    }

private:
    using ReadRun = std::size_t (*)(const DecimalShape& shape, const char*& p, const char* end, double* values,
                                    std::size_t count);

    /// What this processor can do; null for nothing of the kind.
    static ReadRun Choose();

    ReadRun read_ = Choose();
    DecimalShape shape_;
    /// How many numbers were read since the form was learnt.
    std::size_t run_ = 0;
    int pause_ = 0;
    int wait_ = 0;
};

}  // namespace orvalo
