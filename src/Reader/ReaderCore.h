#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Model/Point.h>

#include "Model/CodeWords.h"
#include "Reader/Lexer.h"
#include "Reader/Token.h"
#include "Reader/WordList.h"

namespace orvalo {

/// What all section grammars share: the token stream and the checked conversions of the current token. None of the
/// conversions moves on but ReadCoordinates, and none changes anything when it refuses.
class ReaderCore {
public:
    explicit ReaderCore(std::size_t bufferSize = Lexer::defaultBufferSize) : lexer(bufferSize) {}

    void NextToken() { lexer.NextToken(token); }
    /// The token of a property's value: the next one, behind an optional `=`.
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

    Lexer lexer;
    Token token;
    /// The bulk row being read, from 1; 0 outside of bulk rows.
    std::uint64_t row = 0;
};

}  // namespace orvalo
