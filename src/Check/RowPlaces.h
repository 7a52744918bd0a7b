#pragma once

#include <cstdint>

#include "Check/ErrorCollector.h"

namespace orvalo {

/// Where in its file a bulk row stands, and the bytes from its first number to its third one.
struct RowPlace {
    ReadPlace place;
    std::uint64_t length = 0;
};

/// Finds rows that were read well: the file is read again from the last mark before the row on. For a file that cannot
/// be read again it gives the word before the rows.
class RowPlaces {
public:
    explicit RowPlaces(ErrorCollector& found) : found_(found), lexer_(std::size_t{64} << 10U) {}

    /// The row, from 0, of a section whose rows end with a number of any kind or not.
    RowPlace Find(const SectionRecord& section, bool endsWithNumber, std::uint64_t row);

private:
    bool Begin(const SectionRecord& section, std::uint64_t row);
    bool ReadRow(const SectionRecord& section, bool endsWithNumber, FilePlace& first, FilePlace& third);

    ErrorCollector& found_;
    Lexer lexer_;
    // The row that the lexer stands at, of which section and file.
    const SectionRecord* section_ = nullptr;
    std::uint64_t next_ = 0;
    int file_ = -1;
};

}  // namespace orvalo
