#include <cstdint>
#include <cstdlib>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Reader/Lexer.h"
#include "Reader/ReaderCore.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace std::string_literals;
using support::WriteFile;

constexpr std::size_t bufferSizes[] = {1, 2, 3, 5, 64, Lexer::defaultBufferSize};

/// Where the last token was reported to be and, where that is not the same, in brackets where it truly is.
std::string PlaceOf(const Lexer& lexer) {
    const InputPlace place = lexer.Place();
    const std::string truth = std::to_string(place.line) + ':' + std::to_string(place.column);
    const std::string reported = std::to_string(lexer.position.line) + ':' + std::to_string(lexer.position.column);
    return '@' + (reported == truth ? reported : reported + '(' + truth + ')');
}

/// All tokens of `text`, each after a blank and, where asked for, with its place: strings in quotes, the end of the
/// file as `$`, an error as its code. Before them, where asked for, the naturals that the text begins with.
std::string Tokens(const std::string& text, std::size_t bufferSize, bool places, bool naturals = false) {
    Lexer lexer(bufferSize);
    lexer.baseDirectory = support::ScratchDirectory() + '/';
    lexer.OpenCompleted(WriteFile("tokens", text));
    std::string tokens;
    for (std::uint32_t value = 0; naturals && lexer.ReadNatural(value);) tokens += " [" + std::to_string(value) + ']';
    for (Token token; token.type != TokenType::EndOfFile;) {
        std::string shown;
        try {
            lexer.NextToken(token);
            shown = token.type == TokenType::String ? '"' + token.text + '"' : token.Text();
            if (token.type == TokenType::EndOfFile) shown = "$";
            EXPECT_TRUE(token.type != TokenType::Number || token.value == std::strtod(shown.c_str(), nullptr)) << shown;
        } catch (const Exception& failure) {
            shown = '!' + std::to_string(failure.code());
            token.type = TokenType::EndOfFile;
        }
        tokens += ' ' + shown + (places ? PlaceOf(lexer) : "");
    }
    return tokens;
}

/// A text and its tokens.
using TokensRow = std::pair<std::string, std::string>;

// Counted by hand: every byte read adds a column, a byte put back is counted again, a line feed counts only when the
// same scan reads on after it, and the place is that of the last byte read after a control character or at the start
// of the scan.
const TokensRow placesTable[] = {
    {"", " $@1:1"},
    {"a\nb\nc", " a@1:1 b@1:3(2:1) c@1:5(3:1) $@1:7(3:2)"},
    {"a\r\nb\r\nc\r\n", " a@1:1 b@2:1 c@3:1 $@4:1"},
    {"a   b", " a@1:1 b@1:3(1:5) $@1:7(1:6)"},
    {"a\t\tb", " a@1:1 b@1:4 $@1:6(1:5)"},
    {"a,\t b", " a@1:1 b@1:4(1:5) $@1:7(1:6)"},
    {"x=1", " x@1:1 =@1:3(1:2) 1@1:4(1:3) $@1:6(1:4)"},
    {"a $c\nb", " a@1:1 b@1:6(2:1) $@1:8(2:2)"},
    {"%c\r\nb", " b@2:1 $@2:3(2:2)"},
    {"a;b c\n", " a@1:1 b@1:3 c@1:5 $@1:7(2:1)"},
    {"\n\n a", " a@3:1(3:2) $@3:4(3:3)"},
    {"1\n\n2", " 1@1:1 2@2:1(3:1) $@2:3(3:2)"},
    {"1.5e3\n2", " 1.5e3@1:1 2@1:7(2:1) $@1:9(2:2)"},
    {"\"ab\" c", " \"ab\"@1:1 c@1:5(1:6) $@1:8(1:7)"},
    {"\"a\tb#\"", " !106@1:4(1:1)"},
    {"-\t5", " -5@1:3(1:1) $@1:5(1:4)"},
    {"a\0b"s, " a@1:1 $@1:3(1:2)"},
    {"$\ta\n\t$\n\n b", " b@2:1(4:2) $@2:4(4:3)"},
    {"a\r\n  #", " a@1:1 !105@2:1(2:3)"},
    // Control bytes move the place within a comment too, and the file may end there.
    {"a %bc", " a@1:1 $@1:3(1:6)"},
    {"a %b\x01\x02 c", " a@1:1 $@1:7(1:9)"},
};

const TokensRow naturalsTable[] = {
    {"  12,34 end", " [12] [34] end@1:8(1:9) $@1:12"},
    {"1\n2 x", " [1] [2] x@2:4(2:3) $@2:6(2:4)"},
    {"1\r\n\r\n2\tx", " [1] [2] x@3:4(3:3) $@3:6(3:4)"},
    {"4294967295 4294967296 4294967297 x", " [4294967295] [0] [1] x@1:8(1:34) $@1:10(1:35)"},
    {"007 -1", " [7] -1@1:4(1:5) $@1:7"},
    {"1.5", " [1] .5@1:3(1:2) $@1:6(1:4)"},
    {"1 %2\n3", " [1] 3@1:7(2:1) $@1:9(2:2)"},
    {"\n\n", " $@3:2(3:1)"},
    {"5", " [5] $@1:3(1:2)"},
};

TEST(Lexer, CountsPlacesByItsOwnRules) {
    for (const std::size_t size : bufferSizes) {
        for (const auto& [text, tokens] : placesTable) EXPECT_EQ(Tokens(text, size, true), tokens) << text << size;
        for (const auto& [text, tokens] : naturalsTable) {
            EXPECT_EQ(Tokens(text, size, true, true), tokens) << text << size;
        }
    }
}

const TokensRow tokensTable[] = {
    {"Analysis ANALYSIS _a1 E e5 eE_", " analysis analysis _a1 e e5 ee_ $"},
    {"\"My File.txt\" \"A+b-C=1.5_\" \"$ %;,\t\"", " \"myfile.txt\" \"a+b-c=1.5_\" \"\" $"},
    {"ab.5 ab-5 ab=c ab\"c\"", " ab .5 ab -5 ab = c ab \"c\" $"},
    {"ab$c\nd%e\n1;2\n", " ab c d e 1 2 $"},
    {"5=6\"a\"7+8%", " 5 = 6 \"a\" 7 +8 $"},
    // "A sign begins the next number: `1e5-3` is 1e5 and -3."
    {"1e5-3 1.5+3 5.-3 7-3", " 1e5 -3 1.5 +3 5. -3 7 -3 $"},
    {"\"include\" \"no.such\"", " \"include\" \"no.such\" $"},
    {"- \t,5 + .5 - , 7.25E2", " -5 +.5 -7.25e2 $"},
    {"1E+2 1e-2 5. .5 5.e1 +.5e-3\n", " 1e+2 1e-2 5. .5 5.e1 +.5e-3 $"},
    {"12345678901234567890 1e-320 9007199254740993 0.3", " 12345678901234567890 1e-320 9007199254740993 0.3 $"},
    {"$\xff\x01#\"\n=", " = $"},
    // "A byte of value 0 ends the file, even within a comment."
    {"a ;b\0\nc"s, " a $"},
};

const std::pair<int, std::vector<std::string>> failingTexts[] = {
    {103, {"include \"no.such\""}},
    {105, {"#", "\v", "\x80", "[", "+#"}},
    {106, {"ab#c", "ab\xff", "\"a/b\"", "\"a\\b\"", "\"a:b\""}},
    {107, {"12abc", "12_", "12#", "1e ", "1e$", "1e++1", "1e5.5", "1e5e5", "1..5", "1.5.5", "1.5a"}},
    {107, {". ", ".e5", "+", "+a", "--5", "+=", "+%", "+\""}},
    {108, {"\"a", "\"a\0\""s, "1e", "1e+", "."}},
    {109, {"\"a\n", "\"a\r", "1e\n", "1e+\r", ".\n", "+\n"}},
    // "No `=` stands after `include`."
    {110, {"include 5", "include include", "include = \"tokens\""}},
    {111, {"Include\"tokens\""}},
};

TEST(Lexer, SplitsTextIntoTokens) {
    for (const std::size_t size : bufferSizes) {
        for (const auto& [text, tokens] : tokensTable) EXPECT_EQ(Tokens(text, size, false), tokens) << size;
        for (const auto& [code, texts] : failingTexts) {
            for (const std::string& text : texts) {
                const std::string failure = " !" + std::to_string(code);
                EXPECT_EQ(Tokens(text, size, false), failure) << text << size;
                EXPECT_EQ(Tokens("a = " + text, size, false), " a =" + failure) << text << size;
            }
        }
    }
}

/// What `convert` makes of the text's first token, or the code of the error, negated.
template <class Convert>
std::int64_t Converted(const std::string& text, Convert convert) {
    ReaderCore core;
    core.lexer.OpenCompleted(WriteFile("core", text));
    core.NextToken();
    try {
        return convert(core);
    } catch (const Exception& failure) {
        return -failure.code();
    }
}

TEST(ReaderCore, MatchesKeywords) {
    struct Word {
        std::string_view word;
    };
    const std::tuple<std::vector<Word>, int, std::vector<const char*>> table[] = {
        {{{"analysis"}, {"cubes"}, {"set"}}, 0, {"ANALYSIS"}},
        {{{"analysis"}, {"cubes"}, {"set"}}, 2, {"set"}},
        {{{"analysis"}, {"cubes"}, {"set"}}, -178, {"analys", "analysisx", "5", "\"cubes\"", "", "x"}},
        // A keyword that goes on after a word passes the next word uncounted.
        {{{"a"}, {"b"}, {"ab"}}, 1, {"ab", "b"}},
        {{{"a"}, {"ab"}, {"c"}}, -178, {"ab"}},
        {{{"ab"}, {"x"}, {"y"}, {"abc"}}, 2, {"abc", "y"}},
        {{{"a"}}, -178, {"ab"}},
    };
    for (const auto& [words, index, texts] : table) {
        const auto match = [list = WordList(words.data(), words.size())](const ReaderCore& core) {
            return static_cast<int>(core.Match(list, ReaderMessages::UnknownKeyword));
        };
        for (const char* text : texts) EXPECT_EQ(Converted(text, match), index) << text;
    }
}

TEST(ReaderCore, ConvertsByWidth) {
    // The low 32 bits count (2^32 is 4294967296); what 64 bits do not hold is refused.
    const std::tuple<std::int64_t, std::int64_t, std::int64_t, std::vector<const char*>> table[] = {
        {1, 1, 1, {"1", "1.9", "4294967297", "-4294967295"}},
        {-113, 0, 0, {"0", "0.5", "-0.9", "4294967296"}},
        {2, -114, 2, {"2", "2.9"}},
        {32767, -114, 32767, {"32767", "4295000063"}},
        {2147483647, -114, -121, {"2147483647"}},
        {-113, -114, -32768, {"-32768"}},
        {-113, -114, -121, {"-32769", "2147483648", "9223372036854775808", "1e300", "1e999", "-1e999"}},
        {-113, -114, -121, {"word", "\"1\""}},
    };
    for (const auto& [id, enabled, coordinate, texts] : table) {
        for (const std::string text : texts) {
            EXPECT_EQ(Converted(text, [](const ReaderCore& core) { return core.ReadID(); }), id) << text;
            EXPECT_EQ(Converted(text, [](const ReaderCore& core) { return core.ReadEnabled(); }), enabled) << text;
            const auto readY = [](ReaderCore& core) { return core.ReadCoordinates().y; };
            EXPECT_EQ(Converted("7 " + text + " 9", readY), coordinate) << text;
        }
    }
}

}  // namespace
}  // namespace orvalo
