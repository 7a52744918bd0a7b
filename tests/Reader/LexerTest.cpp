#include <cstdint>
#include <string>
#include <string_view>
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

/// All tokens of `text` with their places: strings in quotes, the end of the file as `$`, an error as its code.
std::string Tokens(const std::string& text, std::size_t bufferSize) {
    Lexer lexer(bufferSize);
    lexer.baseDirectory = support::ScratchDirectory() + '/';
    lexer.OpenCompleted(WriteFile("tokens", text));
    std::string tokens;
    try {
        for (Token token; token.type != TokenType::EndOfFile;) {
            lexer.NextToken(token);
            std::string shown = token.type == TokenType::String ? '"' + token.text + '"' : token.Text();
            if (token.type == TokenType::EndOfFile) shown = "$";
            tokens += (tokens.empty() ? "" : " ") + shown + PlaceOf(lexer);
        }
    } catch (const Exception& failure) {
        tokens += (tokens.empty() ? "!" : " !") + std::to_string(failure.code()) + PlaceOf(lexer);
    }
    return tokens;
}

struct TokensRow {
    std::string text;
    std::string tokens;
};

// Counted by hand: every byte read adds a column, a byte put back is counted again, a line feed counts only when the
// same scan reads on behind it, and the place is that of the last byte read behind a control character or at the start
// of the scan.
const TokensRow placesTable[] = {
    {"", "$@1:1"},
    {"a b", "a@1:1 b@1:3 $@1:5(1:4)"},
    {"a\nb\nc", "a@1:1 b@1:3(2:1) c@1:5(3:1) $@1:7(3:2)"},
    {"a\r\nb\r\nc\r\n", "a@1:1 b@2:1 c@3:1 $@4:1"},
    {"a   b", "a@1:1 b@1:3(1:5) $@1:7(1:6)"},
    {"a,,,b", "a@1:1 b@1:3(1:5) $@1:7(1:6)"},
    {"a\t\tb", "a@1:1 b@1:4 $@1:6(1:5)"},
    {"a \t b", "a@1:1 b@1:4(1:5) $@1:7(1:6)"},
    {"x=1", "x@1:1 =@1:3(1:2) 1@1:4(1:3) $@1:6(1:4)"},
    {"a $c\nb", "a@1:1 b@1:6(2:1) $@1:8(2:2)"},
    {"%c\r\nb", "b@2:1 $@2:3(2:2)"},
    {"a;b c\n", "a@1:1 b@1:3 c@1:5 $@1:7(2:1)"},
    {"\n\n a", "a@3:1(3:2) $@3:4(3:3)"},
    {"1\n\n2", "1@1:1 2@2:1(3:1) $@2:3(3:2)"},
    {"1.5e3\n2", "1.5e3@1:1 2@1:7(2:1) $@1:9(2:2)"},
    {"\"ab\" c", "\"ab\"@1:1 c@1:5(1:6) $@1:8(1:7)"},
    {"\"a\tb#\"", "!106@1:4(1:1)"},
    {"-\t5", "-5@1:3(1:1) $@1:5(1:4)"},
    {"a\0b"s, "a@1:1 $@1:3(1:2)"},
    {"$\ta\n\t$\n\n b", "b@2:1(4:2) $@2:4(4:3)"},
    {"# ", "!105@1:1"},
    {"a\r\n  #", "a@1:1 !105@2:1(2:3)"},
};

TEST(Lexer, CountsPlacesByItsOwnRules) {
    for (const auto& [text, tokens] : placesTable) {
        for (const std::size_t size : bufferSizes) EXPECT_EQ(Tokens(text, size), tokens) << '[' << text << "] " << size;
    }
}

// The tokens alone, places left out.
const TokensRow tokensTable[] = {
    {"Analysis ANALYSIS _a1", "analysis analysis _a1 $"},
    {"E e5 eE_", "e e5 ee_ $"},
    {"\"My File.txt\"", "\"myfile.txt\" $"},
    {"\"A+b-C=1.5_\" \"$ %;,\t\"", "\"a+b-c=1.5_\" \"\" $"},
    {"ab.5 ab-5 ab=c ab\"c\"", "ab .5 ab -5 ab = c ab \"c\" $"},
    {"ab$c\nd%e\n1;2\n", "ab c d e 1 2 $"},
    {"5=6\"a\"7+8", "5 = 6 \"a\" 7 +8 $"},
    {"- \t,5 + .5 -0", "-5 +.5 -0 $"},
    {"1E+2 1e-2 5. .5 5.e1 .5E1", "1e+2 1e-2 5. .5 5.e1 .5e1 $"},
    {"%no line end", "$"},
    {"$\xff\x01#\"\n=", "= $"},
    {"ab#c", "!106"},
    {"ab\xff", "!106"},
    {"\"a/b\"", "!106"},
    {"\"a\\b\"", "!106"},
    {"\"a:b\"", "!106"},
    {"\"a\n", "!109"},
    {"\"a\r", "!109"},
    {"\"a", "!108"},
    {"\"a\0\""s, "!108"},
    {"#", "!105"},
    {"\v", "!105"},
    {"\x80", "!105"},
    {"[", "!105"},
    {"12abc", "!107"},
    {"12_", "!107"},
    {"12#", "!107"},
    {"1e", "!108"},
    {"1e ", "!107"},
    {"1e$", "!107"},
    {"1e\n", "!109"},
    {"1e+", "!108"},
    {"1e+\r", "!109"},
    {"1e++1", "!107"},
    {"1e5.5", "!107"},
    {"1e5e5", "!107"},
    {"1..5", "!107"},
    {"1.5.5", "!107"},
    {"1.5a", "!107"},
    {".", "!108"},
    {". ", "!107"},
    {".\n", "!109"},
    {".e5", "!107"},
    {"5+", "5 !107"},
    {"+\n", "!109"},
    {"+a", "!107"},
    {"+#", "!105"},
    {"--5", "!107"},
    {"+=", "!107"},
    {"+%", "!107"},
    {"+\"", "!107"},
    {"include 5", "!110"},
    {"include include", "!110"},
    {"Include\"tokens\"", "!111"},
    {"include \"no.such\"", "!103"},
};

TEST(Lexer, SplitsTextIntoTokens) {
    for (const auto& [text, tokens] : tokensTable) {
        for (const std::size_t size : bufferSizes) {
            std::string kept;
            bool inPlace = false;
            for (const char c : Tokens(text, size)) {
                inPlace = c == '@' || (inPlace && c != ' ');
                if (!inPlace) kept += c;
            }
            EXPECT_EQ(kept, tokens) << '[' << text << "] " << size;
        }
    }
}

TEST(Lexer, ConvertsNumbersWhateverTheBuffer) {
    constexpr struct {
        const char* text;
        double value;
    } table[] = {
        {"1e5", 1e5},
        {"-  5", -5},
        {"5.", 5},
        {"+.5e-3", 0.0005},
        {"0.1", 0.1},
        {"- , 7.25E2", -725},
        {"12345678901234567890", 12345678901234567890.0},
        {"1e-320", 1e-320},
        {"9007199254740993", 9007199254740992.0},
        {"0.30000000000000004", 0.1 + 0.2},
    };
    for (const auto& [text, value] : table) {
        for (const char* terminator : {"", " ", "\n", "%", "=", "\""}) {
            for (const std::size_t size : bufferSizes) {
                Lexer lexer(size);
                lexer.OpenCompleted(WriteFile("number", text + std::string(terminator)));
                Token token;
                lexer.NextToken(token);
                EXPECT_EQ(token.type, TokenType::Number);
                EXPECT_EQ(token.value, value) << text << terminator << size;
            }
        }
    }
}

// The naturals in brackets, then the token behind them with its place.
TEST(Lexer, ReadsNaturals) {
    const TokensRow table[] = {
        {"  12,34 end", "[12 34] end@1:8(1:9)"},
        {"1\n2 x", "[1 2] x@2:4(2:3)"},
        {"1\r\n\r\n2\tx", "[1 2] x@3:4(3:3)"},
        {"4294967295 4294967296 4294967297 x", "[4294967295 0 1] x@1:8(1:34)"},
        {"007 -1", "[7] -1@1:4(1:5)"},
        {"1.5 x", "[1] .5@1:3(1:2)"},
        {"1 %2\n3", "[1] 3@1:7(2:1)"},
        {"\n\n", "[] $@3:2(3:1)"},
        {"5", "[5] $@1:3(1:2)"},
    };
    for (const auto& [text, expected] : table) {
        for (const std::size_t size : bufferSizes) {
            Lexer lexer(size);
            lexer.OpenCompleted(WriteFile("naturals", text));
            std::string found;
            for (std::uint32_t value = 0; lexer.ReadNatural(value);) {
                found += (found.empty() ? "" : " ") + std::to_string(value);
            }
            Token token;
            lexer.NextToken(token);
            const std::string behind = token.type == TokenType::EndOfFile ? "$" : token.Text();
            EXPECT_EQ('[' + found + "] " + behind + PlaceOf(lexer), expected) << text << size;
        }
    }
}

ReaderCore CoreAt(const std::string& text) {
    ReaderCore core;
    core.lexer.OpenCompleted(WriteFile("core", text));
    core.NextToken();
    return core;
}

/// What `convert` makes of the text's first token, or the code of the error, negated.
template <class Convert>
std::int64_t Converted(const std::string& text, Convert convert) {
    ReaderCore core = CoreAt(text);
    try {
        return convert(core);
    } catch (const Exception& failure) {
        return -failure.code();
    }
}

TEST(ReaderCore, MatchesKeywords) {
    constexpr const char* sections = "analysis.materials.cubes.actuator.piezo.sensor.dump.table.set.damping.";
    const struct {
        const char* text;
        const char* list;
        int index;
    } table[] = {
        {"ANALYSIS", sections, 0},
        {"damping", sections, 9},
        {"analys", sections, -178},
        {"analysisx", sections, -178},
        {"5", sections, -178},
        {"\"cubes\"", sections, -178},
        {"", sections, -178},
        {"x", sections, -178},
        // A keyword that goes on behind a word passes the next word uncounted.
        {"ab", "a.b.ab.", 1},
        {"ab", "a.ab.c.", -178},
        {"abc", "ab.x.y.abc.", 2},
        {"ab", "abc.ab.", 1},
        {"b", "a.b.", 1},
        {"ab", "a.", -178},
    };
    for (const auto& [text, list, index] : table) {
        EXPECT_EQ(Converted(text,
                            [list = list](const ReaderCore& core) {
                                return static_cast<int>(core.MatchKeyword(list, ReaderMessages::UnknownKeyword));
                            }),
                  index)
            << text << " in " << list;
    }
}

TEST(ReaderCore, ConvertsByWidth) {
    const auto id = [](const ReaderCore& core) { return core.ReadID(); };
    const auto enabled = [](const ReaderCore& core) { return core.ReadEnabled() ? 1 : 0; };
    const struct {
        const char* text;
        std::int64_t id;
        std::int64_t enabled;
    } table[] = {
        {"1", 1, 1},
        {"2147483647", 2147483647, -114},
        {"7.9", 7, -114},
        {"0", -113, 0},
        {"0.5", -113, 0},
        {"1.9", 1, 1},
        {"2", 2, -114},
        {"-0.9", -113, 0},
        {"-1", -113, -114},
        {"2147483648", -113, -114},
        // 2^32 + 5 and 2^32: the low 32 bits count. What 64 bits do not hold is refused.
        {"4294967301", 5, -114},
        {"4294967296", -113, 0},
        {"4294967297", 1, 1},
        {"-4294967295", 1, 1},
        {"9223372036854775808", -113, -114},
        {"1e300", -113, -114},
        {"1e999", -113, -114},
        {"-1e999", -113, -114},
        {"word", -113, -114},
        {"\"1\"", -113, -114},
        {"", -113, -114},
    };
    for (const auto& row : table) {
        EXPECT_EQ(Converted(row.text, id), row.id) << row.text;
        EXPECT_EQ(Converted(row.text, enabled), row.enabled) << row.text;
    }
}

TEST(ReaderCore, ReadsCoordinates) {
    const struct {
        const char* text;
        std::int64_t packed;  // x * 10000 + y * 100 + z
    } table[] = {
        {"1 2 3", 10203},    {"-32768 0 0", -327680000}, {"32767 0 0", 327670000},
        {"32768 1 1", -120}, {"-32769 1 1", -120},       {"1 32768 1", -121},
        {"1 1 32768", -122}, {"1.9 -0.9 3", 10003},      {"1 2", -122},
        {"1 x 2", -121},     {"\"1\" 1 1", -120},        {"4294967297 4294967298 -4294967295", 10201},
        {"1e19 1 1", -120},  {"1 1 1e999", -122},
    };
    for (const auto& [text, packed] : table) {
        EXPECT_EQ(Converted(text,
                            [](ReaderCore& core) {
                                const Point p = core.ReadCoordinates();
                                return p.x * 10000 + p.y * 100 + p.z;
                            }),
                  packed)
            << text;
    }
}

}  // namespace
}  // namespace orvalo
