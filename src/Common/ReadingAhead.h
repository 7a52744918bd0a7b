#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "Common/RowText.h"

namespace orvalo {

/// Whether several threads are to read rows, and where in a file that is likely to be worth it.
class ReadingAhead {
public:
    explicit ReadingAhead(unsigned int team = 1) : threads(team) {}

    /// Whether to try it with up to `rows` rows of that layout. Where rows are not plain this is asked before each, so
    /// the tests that cost least come first.
    bool MayPay(const TextAhead& text, RowLayout layout, std::uint64_t rows) {
        if (&text.file == file_ && text.offset < notBefore_) return false;
        // A row takes some ten bytes.
        if (rows < Least(text) / 16 || !BeginsAfterRow(text, layout)) return false;
        if (text.BytesAfter() >= Least(text)) return true;
        file_ = &text.file;
        notBefore_ = std::numeric_limits<std::uint64_t>::max();
        return false;
    }

    /// Notes how many blocks were read from there on, and where the reader stands. Where it does not go far, rows are
    /// of another kind than threads read, so that it is tried less and less often.
    void Note(const TextAhead& text, std::uint64_t blocks) {
        constexpr std::uint64_t enough = 16;
        pause_ = blocks >= enough ? 0 : std::max(2 * pause_, Least(text));
        file_ = &text.file;
        notBefore_ = text.offset + pause_;
    }

    unsigned int threads;

private:
    /// A MiB, usually: what is shorter is read before threads have started.
    static std::uint64_t Least(const TextAhead& text) { return 4 * std::uint64_t{text.bufferSize}; }

    const platform::InputFile* file_ = nullptr;
    std::uint64_t notBefore_ = 0;
    std::uint64_t pause_ = 0;
};

}  // namespace orvalo
