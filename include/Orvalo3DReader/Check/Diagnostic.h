#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo {

/// Whether a file is refused for it, or read all the same.
enum class Severity { Error, Warning };

/// What else to look at, and where; without a place when it is about no file.
struct Note {
    /// A sentence or a few.
    std::string message;
    /// Where; `path` is empty when nowhere.
    InputPlace place;
    /// Bytes of the file that it is about, from `place` on; 0 for a mere place.
    std::uint64_t length = 0;
};

/// A way to mend a file: replace `length` bytes at `place` by `replacement`. Of several fixes each is one by itself.
struct Fix {
    /// The first byte to replace.
    InputPlace place;
    /// How many bytes; 0 where something is put in.
    std::uint64_t length = 0;
    /// What to put there.
    std::string replacement;
};

/// One thing that is wrong with a file, or likely not meant.
struct Diagnostic {
    /// Whether the reader refuses the file for it.
    Severity severity = Severity::Error;
    /// The catalogue entry (ReaderMessages) that the reader raises for it; 0 for what only the checker knows.
    int code = 0;
    /// The stable name of what it is, in kebab-case: see Rules.h.
    std::string rule;
    /// Without the place.
    std::string message;
    /// The first byte of what it is about; `path` is empty when it is about no file that could be read.
    InputPlace place;
    /// Bytes that it is about, from `place` on; 0 for a mere place, such as the end of a file.
    std::uint64_t length = 0;
    /// The bulk row, counted from 1 within its section; 0 outside of rows.
    std::uint64_t row = 0;
    /// The words that would have been right at `place`, in lower case; empty where no word would.
    std::vector<std::string> expected;
    /// What explains it.
    std::vector<Note> notes;
    /// What would mend it.
    std::vector<Fix> fixes;
    /// For an included file the places of the `include` directives that led there, the innermost first.
    std::vector<InputPlace> includedFrom;
};

}  // namespace orvalo
