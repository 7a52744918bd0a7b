#pragma once

#include <cstdint>
#include <string_view>

#include <Orvalo3DReader/Common/Exception.h>

namespace orvalo {

struct Section;

/// How a number that is read differs from the one that is written.
enum class NumberChange : std::uint8_t { FractionCut, Wrapped };

/// Follows a read and decides what becomes of an error. A reader has none, so that the first error ends the read; a
/// checker notes it and lets reading go on where it makes sense again. The lexer holds the place of what is told.
class Recovery {
public:
    Recovery() = default;
    Recovery(const Recovery&) = delete;
    Recovery& operator=(const Recovery&) = delete;
    virtual ~Recovery() = default;

    /// Notes an error, which is being handled. False where reading is to end with it.
    virtual bool Note(const Exception& failure) = 0;

    /// Whether what follows on the line of the error noted last is not to be read.
    virtual bool LineIsSpoilt() const = 0;

    /// The current token is the name of a section; it is the one where the section ends.
    virtual void SectionBegins(const Section& section) = 0;
    virtual void SectionEnds() = 0;

    /// The current token is the word of a property; the first one of its value; what reading the property left.
    /// Properties of a table within a section nest.
    virtual void PropertyBegins(std::string_view word) = 0;
    virtual void ValueBegins() = 0;
    virtual void PropertyEnds() = 0;
    /// The current token begins a material: a property without a word.
    virtual void RowBegins() = 0;

    /// The lexer stands on the first number of a bulk row, counted from 0 within its block. Returns the next row of
    /// which to tell.
    virtual std::uint64_t BulkRowBegins(std::uint64_t row) = 0;
    /// A block of bulk rows is over; so many were read.
    virtual void RowsRead(std::uint64_t read) = 0;

    /// The current token, or the last bulk number, is a number that is not taken as it is written, but as `taken`. It
    /// may be refused nevertheless.
    virtual void NumberChanges(NumberChange change, std::int64_t taken) = 0;
};

}  // namespace orvalo
