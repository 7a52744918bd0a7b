#pragma once

#include <cstddef>
#include <string>

#include "Check/SourceText.h"

namespace orvalo {

/// The words, numbers and names of one file from a place on, as they are written. Comments are left out, includes are
/// not followed. For counting what was not read: it takes any bytes.
class SourceTokens {
public:
    SourceTokens(SourceText& source, const InputPlace& from) : source_(source), next_(from), begin_(from) {}

    /// Moves on to the next token; false at the end of the file.
    bool Next();

    bool IsNumber() const;
    /// In lower case.
    bool IsWord(std::string_view word) const;

    /// At most as long as any token that is worth looking at.
    std::string text;
    /// Where it begins.
    InputPlace Place() const { return begin_; }
    std::uint64_t Line() const { return begin_.line; }

private:
    char Peek();
    void Take();

    SourceText& source_;
    std::string chunk_;
    std::size_t at_ = 0;
    InputPlace next_;
    InputPlace begin_;
};

/// Numbers that follow one another.
struct WrittenNumbers {
    std::uint64_t count = 0;
    /// The last one.
    InputPlace last;
    /// Whether END follows them, so that they are all that was meant.
    bool closed = false;
};
/// The run after the token at `from`.
WrittenNumbers NumbersAfter(SourceText& source, const InputPlace& from);

}  // namespace orvalo
