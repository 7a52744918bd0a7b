#include "Common/RowText.h"

#include <cstring>
#include <new>

#include "Common/Simd.h"

namespace orvalo {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == ',' || c == '\r';
}

}  // namespace

bool BeginsAfterRow(const TextAhead& text, RowLayout layout) {
    const char* const p = text.begin;
    switch (layout) {
        case RowLayout::Lines:
            return p[-1] == '\n';
        case RowLayout::DecimalLines:
            return p[-1] == '\n' || (p[-1] == '\r' && *p == '\n');
        case RowLayout::NaturalLines:
            return *p == '\n' || (*p == '\r' && p[1] == '\n');
        case RowLayout::Numbers:
            return IsBlank(p[-1]);
    }
    return false;
}

/// The last place in [begin, end) up to which a row is passed, or null. The byte before `begin` may be looked at.
const char* RowText::LastEnd(const char* begin, const char* end) const {
    for (const char* p = end; p-- != begin;) {
        if (layout_ == RowLayout::Numbers) {
            if (IsBlank(*p) && !IsBlank(p[-1])) return p + 1;
        } else if (*p == '\n') {
            const bool carriageReturn = layout_ != RowLayout::Lines && p[-1] == '\r';
            return p + (layout_ == RowLayout::NaturalLines ? 0 : 1) - (carriageReturn ? 1 : 0);
        }
    }
    return nullptr;
}

std::uint64_t RowText::Count(const char* begin, const char* end) const {
    const bool numbers = layout_ == RowLayout::Numbers;
    std::uint64_t count = 0;
    for (; end - begin >= 64; begin += 64) count += numbers ? simd::CountStarts(begin) : simd::CountBytes(begin, '\n');
    for (; begin != end; ++begin) {
        const bool starts = numbers && !IsBlank(begin[0]) && IsBlank(begin[-1]);
        count += starts || (!numbers && *begin == '\n') ? 1U : 0U;
    }
    return count;
}

bool RowText::Fetch(unsigned int member, std::uint64_t block) {
    Member& own = members_[member];
    if (block == 0) {
        own.origin = text_.begin;
        own.offset = text_.offset;
        Divide(own, text_.begin, text_.begin, text_.end);
        return true;
    }
    if (!own.buffer) {
        const std::size_t size = leadingSlack + longestRow_ + text_.bufferSize + scanningSlack;
        own.buffer.reset(new (std::nothrow) char[size]);
        if (!own.buffer) return false;
        std::memset(own.buffer.get(), 0, leadingSlack);
    }
    const std::uint64_t middle = text_.EndOffset() + (block - 1) * text_.bufferSize;
    // What is read again, for the row that reaches into the block.
    const std::size_t again = static_cast<std::size_t>(std::min<std::uint64_t>(longestRow_, middle));
    char* const text = own.buffer.get() + leadingSlack;
    const auto got = text_.file.ReadAt(middle - again, text, again + text_.bufferSize);
    if (!got || *got <= again) return false;
    std::memset(text + *got, 0, scanningSlack);
    own.origin = text;
    own.offset = middle - again;
    const char* const begin = LastEnd(text + 1, text + again);
    if (begin != nullptr) Divide(own, begin, text + again, text + *got);
    return begin != nullptr;
}

/// Makes the text from `begin` on a block of which the rows end in [middle, end).
void RowText::Divide(Member& member, const char* begin, const char* middle, const char* end) const {
    const char* const last = LastEnd(middle, end);
    // The carriage return of the line feed at which the text begins may already have been passed.
    const char* const rowsEnd = last == nullptr ? begin : std::max(last, begin);
    member.block = {begin, rowsEnd, end, Count(begin, rowsEnd)};
}

}  // namespace orvalo
