#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

struct ErrorGroup {
    /// The code and the message, in which {dir} is the directory of the files.
    std::string error;
    /// Each a letter for every section before the text, the number of the bulk row if there is one, a bar, and the
    /// text.
    std::vector<const char*> texts;
};

// Behind whole lines of sections a token is reported where it stands, provided that just one blank precedes it. In bulk
// rows the report stays at the token before them; a token behind them is one column late, the scan for a number having
// tried its first byte. For the marks see MarkedText.
const ErrorGroup table[] = {
    {"102 Out of memory.", {"AM|CUBES count 9e18 format 0 @data 1 1 1 1 END END", "AMC|DAMPING count 9e18 @data"}},
    {"103 Unable to open '{dir}/none.model' input file.", {"A|include @\"None.model\""}},
    {"105 Invalid character.", {"A|@# "}},
    {"106 Invalid character (inside keyword).", {"A|@ab#c"}},
    {"107 Invalid character (inside number).", {"AM1|CUBES count 1 format 1 data 1 1 1 1^ @20x"}},
    {"108 Unexpected End-Of-File.", {"A|@\"abc"}},
    {"109 Unexpected End-Of-Line.", {"A|@\"abc\r\n\""}},
    {"110 Include filename missing", {"A|include @5"}},
    {"111 Recursive include found.", {"A|include @\"m.model\"", "A|include \"empty.model\" include @\"EMPTY.model\""}},
    {"112 Invalid table ID.", {"AMC|PIEZO count 1 data 1 1 t 1 1 @0.5"}},
    {"113 Invalid 'ID' property value, use natural number.",
     {"AMC|ACTUATOR table @0", "AMC|PIEZO id @-3", "AMC|SENSOR id @0 enabled 0 END", "AMC|TABLE id @2147483648",
      "AMC|SET id @= 3"}},
    {"114 Invalid 'Enabled' property value, 0 or 1 is accepted.",
     {"AMC|ACTUATOR enabled @2", "AMC|PIEZO enabled @-1", "AMC|DUMP enabled @\"1\""}},
    {"115 'Count' property not defined.", {"AMC|PIEZO @data count 1"}},
    {"116 Invalid 'Count' property value",
     {"AM|CUBES count @1e19", "AM|CUBES count @\"1\"", "AMC|DAMPING count @0", "AMC|PIEZO count @0.5",
      "AMC|TABLE count @2147483648", "AMC|SET count @4294967296"}},
    {"117 Obligatory property 'Cellsize' not defined.", {"|ANALYSIS @END"}},
    {"117 Obligatory property 'Count' not defined.",
     {"AM|CUBES format 0 @data", "AMC|DAMPING @data", "AMC|DAMPING @END", "AMC|TABLE id 2 @data", "AMC|SET @END"}},
    {"117 Obligatory property 'Data' not defined.", {"AM|CUBES count 1 format 0 @END", "AMC|SET count 1 id 1 @END"}},
    {"117 Obligatory property 'Format' not defined.", {"AM|CUBES count 1 @data", "AM|CUBES count 1 @END"}},
    {"117 Obligatory property 'ID' not defined.", {"AMC|TABLE count 2 @data", "AMC|SET count 1 @data"}},
    {"117 Obligatory property 'Timestep' not defined.", {"|ANALYSIS cellsize 1 @END"}},
    {"118 Numerical property value expected.",
     {"|ANALYSIS cellsize =^ @= 1", "A|MATERIALS 1 2 \"a\" 1 2 3 4 5 6 7 8 @\"9\"",
      "AMC|ACTUATOR factoru 1 factorv 2 factorw @x", "AMC|TABLE id 1 count 2 data 1 @x"}},
    {"119 Invalid proverty value provided.",
     {"|ANALYSIS cellsize @0 END", "|ANALYSIS timestep @-1 END", "|ANALYSIS starttime @-1e-9 END",
      "|ANALYSIS roomtemperature @-273.16 END", "AMC|ACTUATOR start @-1", "AMC|PIEZO start @214748364.8",
      "AMC|ACTUATOR frequency @-1", "AMC|ACTUATOR duration @0"}},
    {"120 Invalid X coordinate value (or out of range).",
     {"AM1|CUBES count 2 format 0 ^data @32768 1 1 1", "AMC|PIEZO count 1 data @4294967297 1 i",
      "AMC2|SET id 1 count 2 ^data 1 1 1\n@99999 1 1"}},
    {"121 Invalid Y coordinate value (or out of range).",
     {"AM1|CUBES count 2 format 0 ^data 1 @-1 1 1", "AMC|PIEZO position 1 @x 1", "AMC1|SET id 1 count 2 ^data 1 @END"}},
    {"122 Invalid Z coordinate value (or out of range).",
     {"AM2|CUBES count 2 format 0 ^data 1 1 1 1\n\n1 1 @END", "AMC1|DAMPING count 1 ^data 1 1 @32768 1 0.5 END",
      "AMC|SENSOR position 1 1 @END"}},
    {"123 Currently only the 'point' is supported.", {"AMC|ACTUATOR shape @cube", "AMC|SENSOR shape =^ @cube"}},
    {"124 'U', 'V', 'W' or 'All' expected.", {"AMC|ACTUATOR direction U W @\"v\""}},
    {"125 'U', 'V', 'W' or 'M' expected.", {"AMC|SENSOR output @1"}},
    {"126 'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected.", {"AMC|DUMP output u0 @\"v0\""}},
    {"127 Piezo point position duplicated (-3,4).", {"AMC|PIEZO count 2 data -3 4 i -3 4 @i"}},
    {"128 Piezo direction not supported.", {"AMC|PIEZO direction 1 1 @0"}},
    {"129 't' or 'i' expected.", {"AMC|PIEZO count 1 data 1 1 @x"}},
    {"130 Not enough piezo points defined (1 missing)", {"AMC|PIEZO count 2 data -32768 1 T 1 1 1.7 @END"}},
    {"131 Too many piezo points provided.", {"AMC|PIEZO count 1 data 1 1 i 1 2 t 1 1 @1 END"}},
    {"132 Section name expected.", {"A|@5", "A|@END", "A|@\"materials\""}},
    {"133 END keyword (section closing) expected.",
     {"AM|CUBES count 1 format 0 data 1 1 1 1 ~.5", "AMC|ACTUATOR enabled 0 input 5 x\r\n@",
      "AMC|PIEZO enabled 0 data END table END x\r\n@", "AMC|SET id 1 count 1 data 1 1 1 ~x"}},
    {"134 ANALYSIS section must be defined first.", {"|@MATERIALS END", "|@DUMP END"}},
    {"135 ANALYSIS section already defined.", {"A|@ANALYSIS END"}},
    {"136 ANALYSIS section not defined.", {"|%nothing\r\n@"}},
    {"137 MATERIALS section expected here.", {"A|@CUBES END", "A|@DAMPING END"}},
    {"138 MATERIALS section already defined.", {"AM|@MATERIALS END"}},
    {"139 MATERIALS section not defined.", {"A|@"}},
    {"140 CUBES section expected here.", {"AM|@SET END"}},
    {"141 CUBES section already defined.", {"AMC|@CUBES END"}},
    {"142 CUBES section not defined.", {"AM|@"}},
    {"143 At least one ACTUATOR or one PIEZO must be defined.", {"AMCS|@"}},
    {"144 At least one SENSOR or one DUMP must be defined.", {"AMCX|@", "AMCP|@"}},
    {"145 Natural number of [1..255] range expected as material index.",
     {"A|MATERIALS @0 0", "A|MATERIALS @256 0", "A|MATERIALS @4294967297 0", "A|MATERIALS @ending"}},
    {"146 Specified material index reused.", {"A|MATERIALS 3.9 0 \"a\" 1 1 1 @3 9"}},
    {"147 Natural number of [0..3] range expected as material definition format.",
     {"A|MATERIALS 1 @-1", "A|MATERIALS 1 @4", "A|MATERIALS 1 @4294967296"}},
    {"148 Material name expected.", {"A|MATERIALS 1 0 @steel 1 1 1"}},
    {"149 Selected material definition format is not handled by this version of library.",
     {"A|MATERIALS 1 3 @\"a\" x"}},
    {"150 Incorrect material index provided.",
     {"AM1|CUBES count 2 format 0 ^data 1 1 1 @256", "AM1|CUBES count 2 format 0 ^data 1 1 1@"}},
    {"151 Material no.2 is not defined.", {"AMC1|DAMPING count 1 ^data 1 1 1 @2 0.5 END"}},
    {"151 Material no.7 is not defined.", {"AM2|CUBES count 2 format 0 ^data 1 1 1 1\n1 1 1 @7\n"}},
    {"152 Invalid 'Format' property value, 0 or 1 is allowed.",
     {"AM|CUBES format @2", "AM|CUBES format @4294967296", "AM|CUBES format @x"}},
    {"154 Init values are not handled by current version of the library.", {"AM|CUBES @init 5"}},
    {"155 Not enough cubes defined (1 missing)", {"AM2|CUBES count 2 format 0 data 1 1 1 1 ~-1 1 1 1"}},
    {"155 Not enough cubes defined (2 missing)",
     {"AMC1|DAMPING count 2 data ~x", "AMC1|SET id 1 count 2 data ~-1 1 1"}},
    {"156 Too many cubes provided.",
     {"AM3|CUBES count 2 format 0 ^data 1 1 1 1\n1 1 1 1 @1.5 END", "AMC2|DAMPING count 1 data 1 1 1 1^ 0.5 @1",
      "AMC2|SET id 1 count 1 ^data 1 1 1 @2 2 2"}},
    {"157 Not enough table elements defined (1 missing)", {"AMC|TABLE id 1 count 3 data 1 2 @END END"}},
    {"157 Not enough table elements defined (2 missing)", {"AMC|TABLE id 1 count 3 data 1 2 3 END count 5 @END"}},
    {"158 Too many table elements provided.", {"AMC|TABLE id 1 count 2 data 1 2 @3"}},
    {"159 One or more obligatory properties were not defined.",
     {"AMC|ACTUATOR shape point position 1 1 1 input wave method force @END",
      "AMC|ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope "
      "none frequency 1 duration 1 @END",
      "AMC|PIEZO id 1 position 0 0 0 method force count 1 data 0 0 i END @END",
      "AMC|SENSOR id 1 position 1 1 1 output u filename a @END", "AMC|DUMP id 1 output u0 @END",
      "AMC|TABLE id 1 count 1 @END"}},
    {"160 Table ID already specified in current section.", {"AMC|ACTUATOR table 3 table @x"}},
    {"161 Table ID = 3 reused.", {"AMC|PIEZO table id 3 count 1 data 1 END END table id 3 count 1 data 1 END @END"}},
    {"161 Table ID = 5 reused.", {"AMC|TABLE id 5 count 1 data 1 END END TABLE id 5 count 1 data 1 END @END"}},
    {"162 Piezo ID = 2 reused.",
     {"AMCP|PIEZO id 2 position 0 0 0 direction 1 0 0 method force count 1 data 0 0 i END @END"}},
    {"163 Sensor ID = 1 reused.", {"AMCS|SENSOR id 1 shape point position 1 1 1 output u filename s @END"}},
    {"164 Dump ID = 9 reused.", {"AMC|DUMP id 9 output all filename s END DUMP id 9 output all filename s @END"}},
    {"165 Append mode not allowed while creating MAT file.",
     {"AMC|DUMP id 1 output all filename a fileformat mat writemode append @END"}},
    {"166 'Definition' or 'Wave' expected.", {"AMC|ACTUATOR input @1"}},
    {"167 'Force' or 'Absolute' expected.", {"AMC|PIEZO method @both"}},
    {"168 'FullPulse', 'HalfPulse' or 'ContinuousWave' expected.", {"AMC|ACTUATOR type =^ @pulse"}},
    {"169 'Square', 'Sine' or 'Gaussian' expected.", {"AMC|ACTUATOR waveform @cosine"}},
    {"170 'None' or 'HannWindow' expected.", {"AMC|ACTUATOR envelope @hann"}},
    {"171 'None' or 'Invert' expected.", {"AMC|ACTUATOR processing @0"}},
    {"172 'Create', 'Append' or 'Overwrite' expected.", {"AMC|SENSOR writemode @replace"}},
    {"173 'Decimal' or 'Scientific' expected.", {"AMC|DUMP notation @0"}},
    {"174 'txt' or 'mat' expected.", {"AMC|DUMP fileformat @\"txt\""}},
    {"176 Piezo #1 requires table #5, but it is not defined.",
     {"AMCS|TABLE id 5 count 1 data 1 END END\r\nPIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 "
      "0 t 7 5 6 END END\r\n@"}},
    {"177 Table #3 is needed, but it is not defined.",
     {"AMCS|ACTUATOR shape point position 1 1 1 input wave method force table 5 END\r\nACTUATOR shape point position 1 "
      "1 1 input wave method force table 3 END\r\n@"}},
    {"178 Unknown keyword.",
     {"|ANALYSIS @cells 1", "|ANALYSIS cellsize 1\r\n@", "AM|CUBES @id 5", "AMC|DAMPING count 1 @format",
      "AMC|PIEZO @shape", "AMC|SENSOR output @X", "AMC|DUMP output u0 @u3", "AMC|DUMP @shape point"}},
    {"179 All piezo tables must contain the same samples count.",
     {"AMC|PIEZO table id 3 count 1 data 1 END END table id 4 count 2 data 1 1 END @END"}},
    {"180 Numerical temperature value expected.", {"AM1|CUBES count 1 format 1 data 1 1 1 1^ @hot"}},
    {"181 Set ID = 4 reused.",
     {"AMC|SET id 4 count 1 data 1 1 1 END END\r\nSET id 4 count 1 data 2 2 2 ~END",
      "AMC|SET id 4 count 1 data 1 1 1 END data 2 2 2 @EN^D"}},
    {"183 Numerical damping coefficient value expected.", {"AMC1|DAMPING count 1 data 1 1 1 1^ @END"}},
};

TEST(ModelErrors, SayWhatAndWhere) {
    WriteFile("empty.model", "% nothing\n");
    for (const ErrorGroup& group : table) {
        const std::string message = Replaced(group.error.substr(4), "{dir}", ScratchDirectory());
        for (const std::string row : group.texts) {
            const std::size_t bar = row.find('|');
            const std::size_t letters = row.find_first_of("0123456789|");
            const MarkedText marked(Sections(row.substr(0, letters)) + row.substr(bar + 1));
            for (const std::size_t size : {std::size_t{1}, Lexer::defaultBufferSize}) {
                SCOPED_TRACE(marked.text);
                const Outcome outcome = ReadText(marked.text, {false, true, size});
                EXPECT_EQ(outcome.code, std::stoi(group.error));
                EXPECT_EQ(outcome.what, LocatedMessage("m.model", marked.reported, message));
                EXPECT_EQ(ToText(outcome.place), ToText(marked.truth));
                EXPECT_EQ(outcome.place.path, ScratchDirectory() + "/m.model");
                EXPECT_EQ(std::to_string(outcome.row), letters == bar ? "0" : row.substr(letters, bar - letters));
            }
        }
    }
}

/// Clients see which part of the library refused a text.
TEST(ModelErrors, NameTheirSourceFile) {
    const std::pair<const char*, std::string> rows[] = {
        {"Lexer", Sections("A") + "#"},
        {"Reader", "MATERIALS"},
        {"ReaderMisc", Sections("A") + "5"},
        {"ReaderCore", Sections("AMC") + "ACTUATOR table 0"},
        {"SectionReader", Sections("A") + "MATERIALS 0"},
        {"SectionReader",
         Sections("AMC") + "PIEZO table id 3 count 1 data 1 END END table id 3 count 1 data 1 END END"},
        {"PiezoReader", Sections("AMC") + "PIEZO direction 1 1 0"},
        {"ActuatorReader", Sections("AMC") + "ACTUATOR direction 1"},
        {"OutputReader", Sections("AMC") + "SENSOR output 1"},
        {"TableReader", Sections("AMC") + "TABLE id 0"},
    };
    for (const auto& [file, text] : rows) EXPECT_EQ(ReadText(text).file, file) << text;
}

/// Every message of the catalogue that a model file can bring about is in the table above, or comes from what is no
/// file: a directory (104) and an overlong path (175).
TEST(ModelErrors, CoverTheCatalogue) {
    std::set<int> raised = {ReadPath(ScratchDirectory()).code, ReadPath(std::string(300, 'x')).code};
    for (const ErrorGroup& group : table) raised.insert(std::stoi(group.error));
    std::set<int> expected;
    for (int code = 102; code <= 183; ++code) expected.insert(code);
    expected.erase(153);  // There is no such message.
    expected.erase(182);  // A second DAMPING section is always taken.
    EXPECT_EQ(raised, expected);
}

}  // namespace
}  // namespace orvalo
