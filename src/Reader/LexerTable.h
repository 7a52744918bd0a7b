#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Reader/Token.h"

/// The automaton that finds tokens: which class a byte belongs to, and what a byte of a class does in each state.
namespace orvalo::lexer {

enum Class : std::uint8_t {
    Other,
    Nul,
    Blank,
    CommentStart,
    LineEnd,
    Exponent,
    Letter,
    Digit,
    Dot,
    Sign,
    Equals,
    Quote,
    classes
};

constexpr std::array<Class, 256> MakeClassOf() {
    std::array<Class, 256> table{};
    const auto set = [&table](std::string_view bytes, Class byteClass) {
        for (const char c : bytes) table[static_cast<unsigned char>(c)] = byteClass;
    };
    table[0] = Nul;
    set("\t ,", Blank);
    set("$%;", CommentStart);
    set("\n\r", LineEnd);
    set("abcdfghijklmnopqrstuvwxyzABCDFGHIJKLMNOPQRSTUVWXYZ_", Letter);
    set("Ee", Exponent);
    set("0123456789", Digit);
    set(".", Dot);
    set("+-", Sign);
    set("=", Equals);
    set("\"", Quote);
    return table;
}

inline constexpr std::array<Class, 256> classOf = MakeClassOf();

/// Bytes of these classes become part of a token's text.
constexpr bool IsKept(Class byteClass) {
    return byteClass >= Exponent && byteClass <= Equals;
}

enum State : std::uint8_t {
    Start,
    InKeyword,
    IntegerPart,
    TrailingPoint,
    Fraction,
    ExponentLetter,
    ExponentSign,
    ExponentDigits,
    LeadingPoint,
    InString,
    InComment,
    AfterSign,
    states
};

enum class Effect : std::uint8_t { Go, End, EndPutBack, Fail };

enum class Failure : std::uint8_t { InvalidChar, InvalidCharKeyword, InvalidCharNumber, UnexpectedEOF, UnexpectedEOL };

struct Action {
    Effect effect;
    std::uint8_t argument;  // The State, TokenType or Failure that the effect needs.
};

namespace detail {

constexpr Action Go(State state) {
    return {Effect::Go, state};
}
constexpr Action End(TokenType type) {
    return {Effect::End, static_cast<std::uint8_t>(type)};
}
constexpr Action Back(TokenType type) {
    return {Effect::EndPutBack, static_cast<std::uint8_t>(type)};
}
constexpr Action Fail(Failure failure) {
    return {Effect::Fail, static_cast<std::uint8_t>(failure)};
}

// Wrong text: Bad where no token begins so, No... for what the byte cannot be part of, or for an end that comes too
// soon.
inline constexpr Action Bad = Fail(Failure::InvalidChar);
inline constexpr Action NoKey = Fail(Failure::InvalidCharKeyword);
inline constexpr Action NoNum = Fail(Failure::InvalidCharNumber);
inline constexpr Action NoEof = Fail(Failure::UnexpectedEOF);
inline constexpr Action NoEol = Fail(Failure::UnexpectedEOL);
// The token ends with this byte, or before it: ...Back.
inline constexpr Action Key = End(TokenType::Keyword), KeyBack = Back(TokenType::Keyword);
inline constexpr Action Num = End(TokenType::Number), NumBack = Back(TokenType::Number);
inline constexpr Action Str = End(TokenType::String);
inline constexpr Action Equal = End(TokenType::Equals);
inline constexpr Action Eof = End(TokenType::EndOfFile);
inline constexpr Action Eol = End(TokenType::EndOfLine);
// The token begins or continues.
inline constexpr Action Skip = Go(Start), Word = Go(InKeyword), Text = Go(InString), Note = Go(InComment);
inline constexpr Action Signed = Go(AfterSign), Int = Go(IntegerPart), Lead = Go(LeadingPoint),
                        Point = Go(TrailingPoint), Frac = Go(Fraction), Exp = Go(ExponentLetter),
                        ExpSign = Go(ExponentSign), ExpDig = Go(ExponentDigits);

/// What a byte of each class does in each state.
// clang-format off
inline constexpr std::array<std::array<Action, classes>, states> transitions{{
    //Other  Nul      Blank   Comm.  LineE  Expo.  Letter Digit   Dot      Sign     Equals   Quote
    {Bad,   Eof,     Skip,   Note,  Skip,  Word,  Word,  Int,    Lead,    Signed,  Equal,   Text   },  // Start
    {NoKey, KeyBack, Key,    Key,   Key,   Word,  Word,  Word,   KeyBack, KeyBack, KeyBack, KeyBack},  // InKeyword
    {NoNum, NumBack, Num,    Num,   Num,   Exp,   NoNum, Int,    Point,   NumBack, NumBack, NumBack},  // IntegerPart
    {NoNum, NumBack, Num,    Num,   Num,   Exp,   NoNum, Frac,   NoNum,   NumBack, NumBack, NumBack},  // TrailingPoint
    {NoNum, NumBack, Num,    Num,   Num,   Exp,   NoNum, Frac,   NoNum,   NumBack, NumBack, NumBack},  // Fraction
    {NoNum, NoEof,   NoNum,  NoNum, NoEol, NoNum, NoNum, ExpDig, NoNum,   ExpSign, NoNum,   NoNum  },  // ExponentLetter
    {NoNum, NoEof,   NoNum,  NoNum, NoEol, NoNum, NoNum, ExpDig, NoNum,   NoNum,   NoNum,   NoNum  },  // ExponentSign
    {NoNum, NumBack, Num,    Num,   Num,   NoNum, NoNum, ExpDig, NoNum,   NumBack, NumBack, NumBack},  // ExponentDigits
    {NoNum, NoEof,   NoNum,  NoNum, NoEol, NoNum, NoNum, Frac,   NoNum,   NoNum,   NoNum,   NoNum  },  // LeadingPoint
    {NoKey, NoEof,   Text,   Text,  NoEol, Text,  Text,  Text,   Text,    Text,    Text,    Str    },  // InString
    {Note,  Eof,     Note,   Note,  Eol,   Note,  Note,  Note,   Note,    Note,    Note,    Note   },  // InComment
    {Bad,   NoNum,   Signed, NoNum, NoEol, NoNum, NoNum, Int,    Lead,    NoNum,   NoNum,   NoNum  },  // AfterSign
}};
// clang-format on

}  // namespace detail

using detail::transitions;

/// For each state, a bit for every class of bytes that only lengthen the token.
inline constexpr auto lengthening = [] {
    std::array<std::uint16_t, states> sets{};
    for (std::size_t state = 0; state < states; ++state) {
        for (std::size_t byteClass = 0; byteClass < classes; ++byteClass) {
            const Action action = transitions[state][byteClass];
            if (!IsKept(static_cast<Class>(byteClass)) || action.effect != Effect::Go) continue;
            if (action.argument == state) sets[state] |= static_cast<std::uint16_t>(1U << byteClass);
        }
    }
    return sets;
}();

}  // namespace orvalo::lexer
