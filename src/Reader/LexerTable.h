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
    PointAfterDigits,
    Fraction,
    AfterExponentLetter,
    AfterExponentSign,
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

inline constexpr Action Er = Fail(Failure::InvalidChar);
inline constexpr Action E1 = Fail(Failure::InvalidCharKeyword);
inline constexpr Action E2 = Fail(Failure::InvalidCharNumber);
inline constexpr Action E3 = Fail(Failure::UnexpectedEOF);
inline constexpr Action E4 = Fail(Failure::UnexpectedEOL);
inline constexpr Action Kw = End(TokenType::Keyword);
inline constexpr Action KwB = Back(TokenType::Keyword);
inline constexpr Action Nu = End(TokenType::Number);
inline constexpr Action NuB = Back(TokenType::Number);
inline constexpr Action St = End(TokenType::String);
inline constexpr Action Eq = End(TokenType::Equals);
inline constexpr Action Eof = End(TokenType::EndOfFile);
inline constexpr Action Eol = End(TokenType::EndOfLine);
inline constexpr Action G0 = Go(Start), G1 = Go(InKeyword), G2 = Go(IntegerPart), G3 = Go(PointAfterDigits),
                        G4 = Go(Fraction), G5 = Go(AfterExponentLetter), G6 = Go(AfterExponentSign),
                        G7 = Go(ExponentDigits), G8 = Go(LeadingPoint), G9 = Go(InString), GC = Go(InComment),
                        GS = Go(AfterSign);

}  // namespace detail

inline constexpr auto transitions = [] {
    using namespace detail;
    // clang-format off
    return std::array<std::array<Action, classes>, states>{{
        // Other Nul  Blank Comm. LineE Expo. Letter Digit Dot  Sign Equal Quote
        {{ Er,  Eof, G0,   GC,   G0,   G1,   G1,    G2,   G8,  GS,  Eq,  G9  }},  // Start
        {{ E1,  KwB, Kw,   Kw,   Kw,   G1,   G1,    G1,   KwB, KwB, KwB, KwB }},  // InKeyword
        {{ E2,  NuB, Nu,   Nu,   Nu,   G5,   E2,    G2,   G3,  NuB, NuB, NuB }},  // IntegerPart
        {{ E2,  NuB, Nu,   Nu,   Nu,   G5,   E2,    G4,   E2,  NuB, NuB, NuB }},  // PointAfterDigits
        {{ E2,  NuB, Nu,   Nu,   Nu,   G5,   E2,    G4,   E2,  NuB, NuB, NuB }},  // Fraction
        {{ E2,  E3,  E2,   E2,   E4,   E2,   E2,    G7,   E2,  G6,  E2,  E2  }},  // AfterExponentLetter
        {{ E2,  E3,  E2,   E2,   E4,   E2,   E2,    G7,   E2,  E2,  E2,  E2  }},  // AfterExponentSign
        {{ E2,  NuB, Nu,   Nu,   Nu,   E2,   E2,    G7,   E2,  NuB, NuB, NuB }},  // ExponentDigits
        {{ E2,  E3,  E2,   E2,   E4,   E2,   E2,    G4,   E2,  E2,  E2,  E2  }},  // LeadingPoint
        {{ E1,  E3,  G9,   G9,   E4,   G9,   G9,    G9,   G9,  G9,  G9,  St  }},  // InString
        {{ GC,  Eof, GC,   GC,   Eol,  GC,   GC,    GC,   GC,  GC,  GC,  GC  }},  // InComment
        {{ Er,  E2,  GS,   E2,   E4,   E2,   E2,    G2,   G8,  E2,  E2,  E2  }},  // AfterSign
    }};
    // clang-format on
}();

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
