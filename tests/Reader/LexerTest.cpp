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

/// The same without the places.
std::string BareTokens(const std::string& text, std::size_t bufferSize) {
    std::string kept;
    bool inPlace = false;
    for (const char c : Tokens(text, bufferSize)) {
        inPlace = c == '@' || (inPlace && c != ' ');
        if (!inPlace) kept += c;
    }
    return kept;
}

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
};

const struct {
    int code;
    std::vector<std::string> texts;
} failingTexts[] = {
    {103, {"include \"no.such\""}},
    {105, {"#", "\v", "\x80", "[", "+#"}},
    {106, {"ab#c", "ab\xff", "\"a/b\"", "\"a\\b\"", "\"a:b\""}},
    {107,
     {"12abc", "12_", "12#", "1e ", "1e$", "1e++1", "1e5.5", "1e5e5", "1..5", "1.5.5", "1.5a", ". ", ".e5", "+", "+a",
      "--5", "+=", "+%", "+\""}},
    {108, {"\"a", "\"a\0\""s, "1e", "1e+", "."}},
    {109, {"\"a\n", "\"a\r", "1e\n", "1e+\r", ".\n", "+\n"}},
    {110, {"include 5", "include include"}},
    {111, {"Include\"tokens\""}},
};

TEST(Lexer, SplitsTextIntoTokens) {
    for (const std::size_t size : bufferSizes) {
        for (const auto& [text, tokens] : tokensTable) EXPECT_EQ(BareTokens(text, size), tokens) << text << size;
        for (const auto& [code, texts] : failingTexts) {
            const std::string failure = '!' + std::to_string(code);
            for (const std::string& text : texts) {
                EXPECT_EQ(BareTokens(text, size), failure) << text << size;
                EXPECT_EQ(BareTokens("a = " + text, size), "a = " + failure) << text << size;
            }
        }
    }
}

TEST(Lexer, ConvertsNumbersWhateverTheBuffer) {
    constexpr double values[] = {1e5, -5, 5, 0.0005, 0.1, -725, 12345678901234567890.0, 1e-320, 9007199254740992.0,
                                 0.3};
    const std::string numbers[] = {"1e5",
                                   "-  5",
                                   "5.",
                                   "+.5e-3",
                                   "0.1",
                                   "- , 7.25E2",
                                   "12345678901234567890",
                                   "1e-320",
                                   "9007199254740993",
                                   "0.3000000000000000"};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        for (const char* terminator : {"", " ", "\n", "%", "=", "\""}) {
            for (const std::size_t size : bufferSizes) {
                Lexer lexer(size);
                lexer.OpenCompleted(WriteFile("number", numbers[i] + terminator));
                Token token;
                lexer.NextToken(token);
                EXPECT_EQ(token.type, TokenType::Number);
                EXPECT_EQ(token.value, values[i]) << terminator << size;
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
    constexpr const char* sections = "analysis.materials.cubes.actuator.piezo.sensor.dump.table.set.damping.";
    const struct {
        const char* list;
        int index;
        std::vector<const char*> texts;
    } table[] = {
        {sections, 0, {"ANALYSIS"}},
        {sections, 9, {"damping"}},
        {sections, -178, {"analys", "analysisx", "5", "\"cubes\"", "", "x"}},
        // A keyword that goes on behind a word passes the next word uncounted.
        {"a.b.ab.", 1, {"ab", "b"}},
        {"a.ab.c.", -178, {"ab"}},
        {"ab.x.y.abc.", 2, {"abc", "y"}},
        {"abc.ab.", 1, {"ab"}},
        {"a.", -178, {"ab"}},
    };
    for (const auto& row : table) {
        const auto match = [&row](const ReaderCore& core) {
            return static_cast<int>(core.MatchKeyword(row.list, ReaderMessages::UnknownKeyword));
        };
        for (const char* text : row.texts) EXPECT_EQ(Converted(text, match), row.index) << text << " in " << row.list;
    }
}

TEST(ReaderCore, ConvertsByWidth) {
    // The low 32 bits count (2^32 is 4294967296); what 64 bits do not hold is refused.
    const struct {
        std::int64_t id;
        std::int64_t enabled;
        std::vector<const char*> texts;
    } table[] = {
        {1, 1, {"1", "1.9", "4294967297", "-4294967295"}},
        {-113, 0, {"0", "0.5", "-0.9", "4294967296"}},
        {2, -114, {"2", "2.9"}},
        {5, -114, {"4294967301"}},
        {2147483647, -114, {"2147483647"}},
        {-113, -114, {"-1", "2147483648", "9223372036854775808", "1e300", "1e999", "-1e999", "word", "\"1\"", ""}},
    };
    for (const auto& row : table) {
        for (const char* text : row.texts) {
            EXPECT_EQ(Converted(text, [](const ReaderCore& core) { return core.ReadID(); }), row.id) << text;
            EXPECT_EQ(Converted(text, [](const ReaderCore& core) { return core.ReadEnabled(); }), row.enabled) << text;
        }
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
        const auto read = [](ReaderCore& core) {
            const Point p = core.ReadCoordinates();
            return p.x * 10000 + p.y * 100 + p.z;
        };
        EXPECT_EQ(Converted(text, read), packed) << text;
    }
}

}  // namespace
}  // namespace orvalo
