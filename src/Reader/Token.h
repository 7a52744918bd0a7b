#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace orvalo {

enum class TokenType {
    None,
    EndOfFile,
    EndOfLine,  ///< The end of a comment; never leaves the lexer.
    Equals,
    Keyword,
    Number,
    String,
};

/// What the lexer makes of the next bytes.
struct Token {
    TokenType type = TokenType::None;
    /// The characters that the token keeps, in lower case. Plain tokens leave them in the file's buffer: see Text.
    std::string text;
    /// A plain number or an equals sign as it stands in the buffer, until the lexer moves on; empty for other tokens.
    std::string_view plainText;
    /// The value of a Number.
    double value = 0.0;

    /// The text of any token.
    std::string Text() const {
        std::string lower(plainText.empty() ? std::string_view(text) : plainText);
        // Of a number's characters only the exponent letter has an upper case.
        std::replace(lower.begin(), lower.end(), 'E', 'e');
        return lower;
    }
};

}  // namespace orvalo
