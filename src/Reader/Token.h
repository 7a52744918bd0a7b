#pragma once

#include <string>

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
    /// The characters that the token keeps, in lower case.
    std::string text;
    /// The value of a Number.
    double value = 0.0;
};

}  // namespace orvalo
