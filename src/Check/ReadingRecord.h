#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Reader/InputPlace.h>

#include "Reader/LexerFile.h"
#include "Reader/Recovery.h"
#include "Reader/Sections.h"
#include "Reader/Token.h"

namespace orvalo {

/// A place in one of the files that were read: small, for there may be millions.
struct ReadPlace {
    int file = -1;
    FilePlace place;
};

/// A property as it stood in the file.
struct PropertyRecord {
    /// Empty for a material, which begins with its number.
    std::string_view word;
    /// Whether it is one of a table that is written inside the section.
    bool nested = false;
    ReadPlace place;
    /// Whether an error was found in it.
    bool failed = false;
    /// The first token of the value.
    ReadPlace valuePlace;
    /// The token that reading it left current: the last one of the value, unless that is a list of words.
    ReadPlace endPlace;
    TokenType valueType = TokenType::None;
    double value = 0.0;
    /// The value without its fraction; 0 where that fits no 64 bits.
    std::int64_t Whole() const { return std::abs(value) < 0x1p63 ? static_cast<std::int64_t>(value) : 0; }
    std::string text;
};

struct SectionRecord {
    const Section* section = nullptr;
    ReadPlace place;
    ReadPlace endPlace;
    std::vector<PropertyRecord> properties;
    /// Of the errors in all, how many were known when the section began.
    std::size_t errorsBefore = 0;
    /// Whether an error was found in it.
    bool failed = false;
    /// How many rows its last block of bulk rows had, and where every rowsPerMark-th begins, from the first one on.
    std::uint64_t rowsRead = 0;
    std::vector<ReadPlace> rowMarks;
    static constexpr std::uint64_t rowsPerMark = 16384;

    /// The last property of that word that is the section's own, or null.
    const PropertyRecord* Find(std::string_view word) const {
        for (auto record = properties.rbegin(); record != properties.rend(); ++record) {
            if (record->word == word && !record->nested) return &*record;
        }
        return nullptr;
    }
};

/// A number that is not taken as it is written, or, with a count of them, that there are more in the same section.
struct ChangedNumber {
    ReadPlace place;
    NumberChange change;
    std::int64_t taken = 0;
    std::uint64_t row = 0;
    std::uint64_t more = 0;
};

/// What was read where, for what is to be said of it later.
class ReadingRecord {
public:
    /// A file that was opened, and where it is included: nowhere for the main file.
    struct File {
        std::string path;
        int parent = -1;
        FilePlace includedAt;
    };

    InputPlace PlaceOf(const ReadPlace& place) const;
    /// The places of the `include` directives that led to the file, the innermost first.
    std::vector<InputPlace> IncludedFrom(int file) const;
    /// Orders places as they were read.
    bool Before(const ReadPlace& a, const ReadPlace& b) const;

    std::vector<File> files;
    /// Those of a repeated DAMPING, TABLE, SET... each; in the order read.
    std::vector<SectionRecord> sections;
    /// At most so many of a section and kind as are told of.
    std::vector<ChangedNumber> changedNumbers;

private:
    std::vector<std::pair<int, std::uint64_t>> PathTo(const ReadPlace& place) const;
};

}  // namespace orvalo
