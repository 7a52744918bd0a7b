#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>

#include <Orvalo3DReader/Check/CheckResults.h>

#include "Check/FileSigns.h"
#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

using testing::HasSubstr;

/// Checks the file as ResultsReader reads it, and demands that both agree: the first error is the reader's, and
/// explained; every place is one of the file.
std::vector<Diagnostic> Check(const std::string& path, std::uint64_t size, const CheckOptions& options = {}) {
    int code = 0;
    std::string what;
    try {
        Load(path);
    } catch (const Exception& error) {
        code = error.code();
        what = error.what();
    }
    std::vector<Diagnostic> all = CheckResults(path, options);
    const auto first =
        std::find_if(all.begin(), all.end(), [](const Diagnostic& d) { return d.severity == Severity::Error; });
    EXPECT_EQ(first == all.end() ? 0 : first->code, code);
    EXPECT_EQ(first == all.end() ? "" : first->message, what);
    EXPECT_TRUE(first == all.end() || !first->notes.empty()) << what;
    for (const Diagnostic& d : all) {
        EXPECT_LE(d.place.offset + d.length, size) << d.message;
        for (const Note& note : d.notes) EXPECT_LE(note.place.offset + note.length, size) << note.message;
        for (const Fix& fix : d.fixes) EXPECT_LE(fix.place.offset + fix.length, size) << fix.replacement;
    }
    return all;
}

std::vector<Diagnostic> CheckBytes(std::string_view bytes, const CheckOptions& options = {}) {
    return Check(support::WriteFile("results", bytes), bytes.size(), options);
}

/// Each as "code line:column+length r row", warnings by their rule instead of a code.
std::string Places(const std::vector<Diagnostic>& all) {
    std::string text;
    for (const Diagnostic& d : all) {
        text += text.empty() ? "" : ", ";
        text += d.severity == Severity::Warning ? d.rule : std::to_string(d.code);
        text += ' ' + std::to_string(d.place.line) + ':' + std::to_string(d.place.column) + '+';
        text += std::to_string(d.length) + (d.row > 0 ? " r" + std::to_string(d.row) : "");
    }
    return text;
}

/// All that is said besides, fixes as "->text|".
std::string Explanations(const std::vector<Diagnostic>& all) {
    std::string text;
    for (const Diagnostic& d : all) {
        for (const Note& note : d.notes) text += note.message + '\n';
        for (const Fix& fix : d.fixes) text += "->" + fix.replacement + "|\n";
    }
    return text;
}

struct Case {
    std::string bytes;
    std::string places;
    /// Pieces of what is said.
    std::vector<std::string> said = {};
};

void ExpectAll(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        const std::vector<Diagnostic> all = CheckBytes(c.bytes);
        EXPECT_EQ(Places(all), c.places) << c.bytes.substr(0, 200);
        for (const std::string& said : c.said) EXPECT_THAT(Explanations(all), HasSubstr(said));
    }
}

const std::string names = "x\ty\tz\tf\tux\tuy\n";
const std::string row = "1\t2\t3\t0\t1.5\t-2e-3\n";

/// One row with a text in the column `ux`, in which it begins at column 9 of line 2.
std::string With(const std::string& text) {
    return names + "1\t2\t3\t0\t" + text + "\t2\n";
}

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

TEST(ResultsCheck, TellsWhatStandsInsteadOfANumber) {
    const std::string minus = "\xE2\x88\x92";
    ExpectAll({
        {names + row, ""},
        {"", ""},
        {With("nan") + "1\t2\t3\t0\tinf\t-0x1p3\n", ""},
        {With("abc"), "307 2:9+3 r1", {"Column 5 ('ux') holds 'abc'"}},
        {With("1,5"), "307 2:9+3 r1", {"no decimal comma", "->1.5|"}},
        {With("1d-3"), "307 2:9+4 r1", {"with 'e'", "->1e-3|"}},
        {With("2mm"), "307 2:9+3 r1", {"leave 'mm' out", "->2|"}},
        {With(minus + "1"), "307 2:9+4 r1", {"minus", "->-1|"}},
        {With("N/A"), "307 2:9+3 r1", {"->nan|"}},
        {With("-1.#INF"), "307 2:9+7 r1", {"->-inf|"}},
        {With("'1'"), "307 2:9+3 r1", {"->1|"}},
        {With("****"), "307 2:9+4 r1", {"width"}},
        {With("1.5.6"), "307 2:9+5 r1", {"'1.5.6'"}},
        {With(std::string(50, 'a') + "\x01"), "307 2:9+51 r1", {"aaa...'"}},
        {With("a") + With("b").substr(names.size()), "307 2:9+1 r1, 307 3:9+1 r2"},
        {names + "1\t2\t3\t0\ta\tb\n", "307 2:9+1 r1", {"Column 6 ('uy') holds 'b', which is no number either."}},
        {names + row + names, "307 3:1+1 r2", {"the first line"}},
        {names + "# 7\n" + row, "307 2:1+3 r1", {"no comments"}},
        {names + "-1\t2\t3\t0\t1\t2\n", "307 2:1+2 r1", {"->65535|"}},
        {names + "-0\t2\t3\t0\t1\t2\n", "307 2:1+2 r1", {"->0|"}},
        {names + "-99999\t2\t3\t0\t1\t2\n", "307 2:1+6 r1", {"no sign"}},
        {names + "1\t2\t3.0\t0\t1\t2\n", "307 2:5+3 r1", {"whole numbers", "->3|"}},
        {names + " 1\t2\t3\t0\t1\t2\n", "307 2:1+2 r1", {"->1|"}},
        {names + "1 2 3 0 1 2\n", "307 2:1+11 r1", {"by tabs", "->1\t2\t3\t0\t1\t2|"}},
        {names + "1;2;3;0;1;2\n", "307 2:1+11 r1", {"semicolons", "->1\t2\t3\t0\t1\t2|"}},
        {"u\tv\n1,5,2\n", "307 2:1+5 r1", {"commas"}},
    });
}

TEST(ResultsCheck, TellsWhatIsMissingOrTooMuch) {
    const std::string tooLong = "u\n" + std::string(70000, '1');
    ExpectAll({
        {names + "1\t2\t3\t0\t1\t2\t3\n", "307 2:13+1 r1", {"one more", "named here"}},
        {names + "1\t2\t3\t0\t1\t2 \r\n", "307 2:12+1 r1", {"ends with blanks", "->|"}},
        {"u\tv\n1  \n", "307 2:2+2 r1", {"ends with blanks", "->|"}},
        {names + "1\t2\r\n" + row, "308 2:4+0 r1", {"'z', 'f', 'ux' and 'uy' must follow"}},
        {"a\tb\tc\td\te\tg\th\n1\n", "308 2:2+0 r1", {"'b', 'c', 'd', 'e' and 2 more must"}},
        {names + "1\t\t3\t0\t1\t2\n", "308 2:11+0 r1", {"Several tabs"}},
        {names + row + "\r\n", "308 3:1+0 r2", {"is empty", "->|"}},
        {names + "1\t2\t3\t0\t1", "308 2:10+0 r1", {"cut short"}},
        {names + row + "1\t2", "201 3:4+0 r2", {"'z', 'f'", "cut short"}},
        {std::string("u\tv\n1\t\0"
                     "2\n3\t4\n",
                     13),
         "308 2:3+0 r1",
         {"byte of value 0"}},
        // The rest of a long line is one mistake, and the lines after it keep their numbers.
        {tooLong + "x\n", "307 2:65536+4466 r2", {"more than 65,535 bytes"}},
        {tooLong + tooLong.substr(2) + "\t1\n1 2\n", "307 2:140002+1 r3, 307 3:2+2 r4"},
    });
}

TEST(ResultsCheck, TellsWhatTheFirstLineShouldBe) {
    const std::string bom = "\xEF\xBB\xBF";
    const std::string five = "1\t2\t3\t0\t1\n";
    ExpectAll({
        {"X\tY\tZ\tF\tu\n" + five, "near-miss-header 1:1+7", {"small letters", "->x\ty\tz\tf\tu|"}},
        {"\"x\"\t y\tz\tf \tu\n" + five, "near-miss-header 1:1+11", {"->x\ty\tz\tf\tu|"}},
        {bom + names + row, "near-miss-header 1:1+3", {"byte order mark", "->x\ty\tz\tf\tux\tuy|"}},
        {bom + "u\n1\n", "near-miss-header 1:1+3", {"->u|"}},
        {"f\tx\ty\tz\tu\n" + five, "near-miss-header 1:1+9", {"order x, y, z, f"}},
        {"x\ty\tz\tu\n1\t2\t3\t4\n", "near-miss-header 1:1+7", {"four columns of indices"}},
        {"1\t2\n3\t4\n", "near-miss-header 1:1+3", {"not read as a row"}},
        {"speed of x\n1\n", ""},
        {"a\tx\ty\n1\t2\t3\n", ""},
        // An error says all that there is to say, or goes on by what was meant.
        {"x y z f u\n" + five + "1\t2\t3\t0\tq\n", "307 2:3+7 r1, 307 3:9+1 r2", {"by blanks", "->x\ty\tz\tf\tu|"}},
        {"x,y,z,f,u\n1,2,3,0,1\n1,2,3,0,q\n", "307 2:1+9 r1", {"by commas", "The same goes"}},
        {"u;v\n1\t2\n", "307 2:3+1 r1", {"by semicolons", "->u\tv|"}},
        {names.substr(0, 13) + "\t\n" + row + row, "308 2:18+0 r1", {"ends with a tab", "->x\ty\tz\tf\tux\tuy|"}},
        {"u\t\tv\n1\t2\n", "308 2:4+0 r1", {"without a name", "->u\tv|"}},
        {"X\tY\tZ\tF\tu\n" + Times(4097, five) + "a\n", "102 4098:1+0 r4097", {"at most 4096 rows", "->x\ty"}},
        {"u\n" + Times(4097, "1\n"), "102 4098:1+0 r4097", {"named x, y, z and f"}},
        // One that names no values is not what was meant.
        {names.substr(0, 8) + "\n1\t2\t3\t4\tu\n", "307 2:9+1 r1"},
        {"X\tY\tZ\tF\n1\t2\t3\t4\n", "near-miss-header 1:1+7"},
        {"X Y Z F\n1 2 3 4\n", "307 2:2+6 r1", {"by blanks", "The same goes"}},
        {"# x y z u\n1e0 2 3 4\n", "307 2:4+6 r1", {"by blanks", "->x\ty\tz\tu|"}},
        {"# x\ty\tz\tf\tu\n1\t2\t3\t4\t5\n", "near-miss-header 1:1+9", {"exactly", "->x\ty\tz\tf\tu|"}},
        {"X\tY\tZ\tF\tu\n1\t2\t3\t0\ta\n", "near-miss-header 1:1+7, 307 2:9+1 r1"},
        {"x\ty\tz\tf\n1\t2\t3\t4\n", "201 1:1+7", {"at least one column"}},
        {"x\ty", "201 1:1+3", {"line feed"}},
        {std::string("x\0y\n", 4), "201 1:1+1", {"byte of value 0"}},
        {std::string(65536, 'x') + "\n", "201 1:1+65535", {"65,535 bytes"}},
    });
}

TEST(ResultsCheck, NamesOtherFiles) {
    const std::string v4 = MatMatrix::Words({0, 3, 2, 0, 2}) + std::string("v\0", 2) + std::string(48, '\0');
    ExpectAll({
        {"ANALYSIS cellsize 1 END\nMATERIALS\n", "307 2:1+9 r1", {"a model"}},
        {"; hall\n\nanalysys cellsize 1\n", "307 3:1+8 r2", {"a model"}},
        {"CUBES count\n", "model-as-results 1:1+0"},
        {"MATLAB 7.3 MAT-file, Platform: GLNXA64" + std::string(500, '\0'), "201 1:1+38", {"'-v6'"}},
        {"\x89HDF\r\n\x1A\n", "307 2:1+1 r1", {"HDF5", "'-v6'"}},
        {MatHeader().substr(0, 127), "201 1:1+38", {"has 128 bytes"}},
        {"MATLAB 7.0\n1\n", "foreign-mat-file 1:1+0"},
        {v4, "201 1:1+0", {"version 4"}},
        {std::string("\xFF\xFEx\0\t\0", 6), "201 1:1+3", {"UTF-16"}},
        {"\x1F\x8B\x08", "201 1:1+3", {"gzip"}},
    });
    EXPECT_EQ(Places(CheckResults("/nonexistent/r.txt")), "200 1:1+0");
    EXPECT_THAT(Explanations(CheckResults("/nonexistent/r.txt")), HasSubstr("No such file"));
    EXPECT_THAT(Explanations(CheckResults("/")), HasSubstr("directory"));
    EXPECT_TRUE(LooksLikeModel("include \"a.cubes\""));
    for (const char* const text : {"", "set\tux\tuy\n1\t2", "include", "x\ty", "\"cubes\"", "table"}) {
        EXPECT_FALSE(LooksLikeModel(text)) << text;
    }
}

TEST(ResultsCheck, TellsWhatDiffersInRealMatFiles) {
    const struct {
        std::string name;
        std::string places;
        std::vector<std::string> said = {};
    } cases[] = {
        {"matio-four-rows", ""},
        {"matio-padded", "209 1:237+4", {"'i', 18 bytes, is padded", "four columns"}},
        {"matio-int16-class", "204 1:265+4", {"'i' is a matrix of class int16", "double(", "-1000"}},
        {"scipy-values", "211 1:233+0", {"values only ('v', 3 x 2)", "-1000"}},
        {"scipy-values-and-int16-class", "204 1:249+4", {"'i' is a matrix of class int16"}},
        {"scipy-compressed", "203 1:129+4", {"compressed", "-v6"}},
        {"scipy-single", "204 1:145+4", {"class single", "double("}},
        {"scipy-int32", "204 1:145+4", {"class int32"}},
        {"scipy-complex", "204 1:145+4", {"'v' is complex", "real("}},
        {"scipy-three-dimensions", "204 1:157+4", {"'v' has 3 dimensions", "reshape("}},
        {"scipy-nine-byte-name", "205 1:189+4", {"'velocity1', 9 bytes", "Rename"}},
        {"scipy-no-variables", "foreign-mat-file 1:1+0"},
        {"octave-doubles", "204 1:149+4", {"array flags of 'v' is 1", "Octave"}},
        {"octave-integers-as-doubles", "204 1:149+4", {"array flags of 'i' is 1"}},
        {"octave-int16", "204 1:145+4", {"class int16"}},
        {"octave-compressed", "203 1:129+4", {"compressed", "-v6"}},
    };
    for (const auto& c : cases) {
        const std::string path = ORVALO_TEST_DATA "/results/" + c.name + ".mat";
        const std::vector<Diagnostic> all = Check(path, std::filesystem::file_size(path));
        EXPECT_EQ(Places(all), c.places) << c.name;
        for (const std::string& said : c.said) EXPECT_THAT(Explanations(all), HasSubstr(said)) << c.name;
    }
}

TEST(ResultsCheck, TellsWhatDiffersInAMatFile) {
    const std::string mat = MatHeader();
    const MatMatrix values = Values(2, {1, 2, 3, 4});
    const MatMatrix indices = Indices(3, {7, 8, 0, 0, -1, -1});
    const std::string both = mat + values.Bytes() + indices.Bytes();
    const auto with = [&](std::size_t word, std::uint32_t value) { return mat + values.Bytes({{word, value}}); };
    const auto name = [&](std::uint32_t tag) { return mat + values.Bytes().replace(40, 4, MatMatrix::Words({tag})); };
    MatMatrix longName = values;
    longName.name = std::string(4096, 'n');
    ExpectAll({
        {both, ""},
        {both.substr(0, 200), "201 1:201+0", {"lacks 16 bytes of the data of 'v', which is 2 x 2"}},
        {both.substr(0, 150), "201 1:151+0", {"lacks 18 bytes of the head"}},
        {both.substr(0, 171), "201 1:172+0", {"lacks 1 byte of the name"}},
        {both.substr(0, 178), "201 1:179+0", {"lacks 6 bytes of the tag of the data of 'v'"}},
        {both + std::string(4, '\0'), "201 1:" + std::to_string(both.size() + 1) + "+4", {"Zeros"}},
        {MatHeader({"\1\0MI", 4}), "202 1:125+4", {"big-endian"}},
        {MatHeader({"\0\2IM", 4}), "202 1:125+4", {"00 01"}},
        {with(0, 0x0E000000), "203 1:129+4", {"big-endian"}},
        {with(0, 9), "203 1:129+4", {"here stands 9"}},
        {with(4, 1), "204 1:145+4", {"'v' is a cell array"}},
        {with(4, 2), "204 1:145+4", {"'v' is a struct", "val = v.val"}},
        {with(4, 5), "204 1:145+4", {"sparse", "full("}},
        {with(4, 0x206), "204 1:145+4", {"logical"}},
        {with(2, 5), "204 1:137+4", {"must stand 6"}},
        {name(2), "206 1:169+4", {"name"}},
        {mat + longName.Bytes(), "207 1:173+4", {"4096 bytes"}},
        {with(10, 2), "205 1:177+4", {"'v' is stored as unsigned 8-bit", "-1000"}},
        {with(10, 7), "205 1:177+4", {"single-precision", "double("}},
        {with(10, 99), "205 1:177+4", {"not 99"}},
        {with(11, 24), "208 1:181+4", {"2 x 2 numbers, which take 32 bytes; its data has 24"}},
        {mat + Values(0, {}).Bytes(), "208 1:181+4", {"empty"}},
        {with(1, 0), "209 1:133+4", {"counts 0 bytes; its parts have 80"}},
        {mat + values.Bytes() + values.Bytes(), "210 1:217+4", {"'v' is the second", "16-bit integers"}},
        {both + indices.Bytes(), "210 1:" + std::to_string(both.size() + 1) + "+4", {"of indices"}},
        {mat + Indices(2, {1, 2}).Bytes(), "204 1:165+4", {"2 columns", "x, y and z"}},
        {mat + Values(10, std::vector<double>(10)).Bytes(), "306 1:165+4", {"10 columns", "may have 9", "transpose"}},
        {mat + indices.Bytes(), "211 1:197+0", {"indices only ('i', 2 x 3)"}},
        {mat + values.Bytes() + Indices(3, {1, 2, 3}).Bytes(), "211 1:249+4", {"'i' are 1 x 3", "'v' are 2 x 2"}},
        {mat + values.Bytes() + Indices(3, {-9, 9, -32768, 32767, -32768, 32767}).Bytes(),
         "102 1:279+2",
         {"81604378624 cells", "y goes up to 32767", "y goes down to -32768"}},
    });
    ExpectAll({{names + "0\t0\t0\t0\t1\t2\n40000\t30000\t30000\t0\t1\t2\n",
                "102 3:1+0",
                {"y goes up to 30000", "at most 4294967295"}}});
}

TEST(ResultsCheck, TellsSoManyOfAKind) {
    const std::string bytes = names + Times(25, "a\n") + Times(3, "1\n");
    const std::vector<Diagnostic> all = CheckBytes(bytes);
    ASSERT_EQ(all.size(), 24U);
    EXPECT_EQ(all[20].message, "5 more of these.");
    EXPECT_EQ(Places({all[20], all[21]}), "307 22:1+0 r21, 308 27:2+0 r26");
    CheckOptions options;
    options.perSection = 1;
    EXPECT_EQ(Places(CheckBytes(bytes, options)), "307 2:1+1 r1, 307 3:1+0 r2, 308 27:2+0 r26, 308 28:1+0 r27");
    options.firstOnly = true;
    EXPECT_EQ(Places(CheckBytes(bytes, options)), "307 2:1+1 r1");
    options = {};
    options.warnings = false;
    EXPECT_EQ(Places(CheckBytes("X\tY\tZ\tF\tu\n", options)), "");
}

TEST(ResultsCheck, AgreesWithTheReaderOnDamagedFiles) {
    const std::string both = Values(1, {1, 2, 3, 4}).Bytes() + Indices(3, std::vector<short>(12)).Bytes();
    for (const std::string& bytes : {names + row + "32768\t1\t2\t0\tinf\tnan(1)\r\n", MatHeader() + both}) {
        for (std::size_t size = 0; size < bytes.size(); ++size) CheckBytes(bytes.substr(0, size));
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            for (const int change : {1, 3, 0x10, 0x1F, 0x80, 0xFF}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(damaged[at] ^ change);
                CheckBytes(damaged);
                ASSERT_FALSE(HasFailure()) << "byte " << at << " changed by " << change;
            }
        }
    }
}

}  // namespace
}  // namespace orvalo
