#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Model/Point.h>

#include "Common/ReadingAhead.h"
#include "Model/CodeWords.h"
#include "Reader/Lexer.h"
#include "Reader/Recovery.h"
#include "Reader/Token.h"
#include "Reader/WordList.h"

namespace orvalo {

/// What all section grammars share: the token stream and the checked conversions of the current token. None of the
/// conversions moves on but ReadCoordinates, and none changes anything when it refuses.
class ReaderCore {
public:
    explicit ReaderCore(std::size_t bufferSize = Lexer::defaultBufferSize) : lexer(bufferSize) {}

    void NextToken() {
        if (held_ > 0) {
            TakeHeld();
        } else {
            lexer.NextToken(token);
        }
    }
    /// The token of a property's value: the next one, after an optional `=`.
    void NextValue();

    bool IsKeyword(std::string_view text) const { return token.type == TokenType::Keyword && token.text == text; }

    /// Passes over every token, after the current one, to the keyword `end` and leaves it current. Throws
    /// SectionClosingExpected at the end of the input.
    void SkipToEnd();

    /// The place of the current keyword in a table. Throws `message` for anything that is not in it.
    std::size_t Match(const WordList& words, const ExceptionMessage& message) const;
    /// The same, but nothing for a keyword that is not in the table. Throws as `sourceModule` for anything that is no
    /// keyword.
    std::optional<std::size_t> FindWord(const WordList& words, const char* sourceModule,
                                        const ExceptionMessage& message) const;
    /// The code of the current keyword. Throws `message` for anything that is not in the table.
    template <std::size_t n>
    int ReadCode(const CodeWord (&words)[n], const ExceptionMessage& message) const {
        return words[Match(words, message)].code;
    }

    /// The number's value truncated toward zero; nothing for other tokens and for what 64 bits do not hold.
    std::optional<std::int64_t> Truncated() const;
    /// A natural number in the low 32 bits of the truncated value, as IDs are read; nothing for any other.
    std::optional<int> TruncatedID() const;

    /// Throws InvalidIDProperty unless TruncatedID gives one.
    int ReadID() const;
    /// Throws InvalidEnabledProperty for anything but 0 and 1.
    bool ReadEnabled() const;
    /// Throws NumericalValueExpected for anything but a number.
    double ExpectNumber() const;
    /// As ExpectNumber, and throws InvalidPropertyValue for a number that does not exceed `bound`.
    double ExpectGreaterThan(double bound) const;
    /// As ExpectNumber, and throws InvalidPropertyValue for a number below `bound`.
    double ExpectAtLeast(double bound) const;
    /// Reads three cube coordinates from the current token on; the third one stays current. Throws
    /// InvalidXCoordinate, InvalidYCoordinate or InvalidZCoordinate.
    Point ReadCoordinates();

    /// Reads a bulk number; see Lexer::ReadNatural.
    bool ReadNatural(std::uint32_t& value) {
        const bool read = lexer.ReadNatural(value);
        if (read && lexer.NaturalWrapped()) TellOf(NumberChange::Wrapped, value);
        return read;
    }

    Lexer lexer;
    Token token;
    ReadingAhead ahead;
    /// The bulk row being read, from 1; 0 outside of bulk rows.
    std::uint64_t row = 0;
    /// The bulk row, from 0, of which to tell: rows that are read in passing end before it. Beyond all for a reader.
    std::uint64_t rowLimit = std::numeric_limits<std::uint64_t>::max();

    /// Where reading may go on after an error: the rest of this class. Null for a reader.
    Recovery* recovery = nullptr;
    /// The words that the last failed Match allowed, and those of a list of words that the current token ended.
    mutable std::optional<WordList> expected;
    mutable std::optional<WordList> endedList;

    /// The numbers that the check would have taken which failed last; `least` itself only where it is included.
    struct Range {
        double least;
        double most;
        bool leastIncluded;
    };
    mutable std::optional<Range> range;
    /// The properties that the last check for them found missing.
    mutable std::vector<std::string_view> missing;

    /// The ID that the error is about which may come next.
    int subject = 0;

    /// Whether reading is to go on after the failure, which is being handled.
    bool Recovers(const Exception& failure);
    /// Does what may fail; returns whether it went well, where reading is to go on even if it did not.
    template <class Step>
    bool Attempt(const Step& step) {
        try {
            step();
            return true;
        } catch (const Exception& failure) {
            if (!Recovers(failure)) throw;
            return false;
        }
    }

    /// After an error among properties: makes a word of `words` the current token, be it the one that an unknown
    /// keyword most likely means, or the next one in the file. False where the section is over instead: its END is
    /// missing.
    bool ResumeAmong(const WordList& words, bool unknownKeyword);
    /// After something that is no section name: makes a section name or the end of the input the current token.
    void ResumeAtSection();
    /// After an error in something that stands on a line of its own: holds the first number of a later line of which
    /// `mayBegin` takes the rest, or END, or what ends the section.
    void ResumeOnLaterLine(bool (*mayBegin)(std::string_view rest));
    /// Whether the current token is on another line than the last one that this was asked of: so that a line without
    /// end is not gone through again and again.
    bool IsOnNewLine();
    /// Passes over the rest of a block, to its END or what ends the section, and leaves that current.
    void SkipBlock();
    /// Whether the current token is a misspelt END: it then becomes one.
    bool MeansEnd();
    /// Has the current token read again as the next one.
    void Hold() { held_ = 1; }
    bool IsHeld() const { return held_ > 0; }
    /// Whether the value of a property, which is current and is none, makes a section of that name of the property: the
    /// END before it is missing.
    bool BeginsSection(std::string_view property) const;
    /// Has the name of the section, and then the current token, read as the next ones.
    void HoldSection(std::string_view name);
    /// Whether the current section is one that was taken for a property.
    bool SectionWasHeld() const { return !heldText_.empty(); }
    /// Passes over whatever cannot be read, too.
    void NextReadableToken();
    /// Whether reading is on its way from an error to where it goes on.
    bool resuming = false;
    /// Whether the current token is the name of a section or the end of the input.
    bool AtSection() const;
    /// As AtSection; also true on a word of the section that is being read.
    bool AtWord() const;
    /// The words of the section that is being read.
    std::optional<WordList> sectionWords;

private:
    void TellOf(NumberChange change, std::int64_t taken) const {
        if (recovery != nullptr) recovery->NumberChanges(change, taken);
    }

    void TakeHeld();

    /// How many tokens are to be read again; the text of the second one.
    int held_ = 0;
    std::string heldText_;
    std::optional<std::pair<int, FilePlace>> resumedAt_;
};

}  // namespace orvalo
