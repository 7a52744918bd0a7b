#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

// After whole lines of sections a token is reported where it stands, provided that just one blank precedes it. In bulk
// rows the report stays at the token before them; a token after them is one column late, the scan for a number having
// tried its first byte. For the marks see MarkedText.
//
// In a row stand the code, what clients see as the error's origin, and the message, in which {dir} is the directory of
// the files; then texts, each after a letter for every section before it and the number of the bulk row if there is
// one.
const auto table = Rows(R"(
102 Cubes: Out of memory. | AM CUBES count 9e18 format 0 @data 1 1 1 1 END END | AMC DAMPING count 9e18 @data
102 Table: Out of memory.
  | - ANALYSIS cellsize 1 timestep 1 END MATERIALS END CUBES count 1 format 0 data END END ACTUATOR shape point position
    1 1 1 input definition method force type fullpulse waveform sine envelope none frequency 1 phase 0
    duration 2305843009213693952 END DUMP id 1 output all filename f END /@
103 LexerFile: Unable to open '{dir}none.model' input file. | A include @"None.model"
105 Lexer: Invalid character. | A @#
106 Lexer: Invalid character (inside keyword). | A @ab#c
107 Lexer: Invalid character (inside number). | AM1 CUBES count 1 format 1 data 1 1 1 1^ @20x
108 Lexer: Unexpected End-Of-File. | A @"abc
109 Lexer: Unexpected End-Of-Line. | A @"abc\"
110 Lexer: Include filename missing | A include @5
111 Lexer: Recursive include found. | A include @"m.model" | A include "empty.model" include @"EMPTY.model"
112 PiezoReader: Invalid table ID. | AMC PIEZO count 1 data 1 1 t 1 1 @0.5
113 ReaderCore: Invalid 'ID' property value, use natural number. | AMC ACTUATOR table @0 | AMC PIEZO id @-3
  | AMC SENSOR id @0 enabled 0 END
113 TableReader: Invalid 'ID' property value, use natural number. | AMC TABLE id @2147483648
113 SectionReader: Invalid 'ID' property value, use natural number. | AMC SET id @= 3
114 ReaderCore: Invalid 'Enabled' property value, 0 or 1 is accepted. | AMC ACTUATOR enabled @2
  | AMC PIEZO enabled @-1 | AMC DUMP enabled @"1"
115 PiezoReader: 'Count' property not defined. | AMC PIEZO @data count 1
116 SectionReader: Invalid 'Count' property value | AM CUBES count @1e19 | AM CUBES count @"1" | AMC DAMPING count @0
  | AMC PIEZO count @0.5 | AMC SET count @4294967296
116 TableReader: Invalid 'Count' property value | AMC TABLE count @2147483648
117 ReaderMisc: Obligatory property 'Cellsize' not defined. | - ANALYSIS @END
117 ReaderMisc: Obligatory property 'Count' not defined. | AM CUBES @data | AM CUBES format 0 @END | AMC DAMPING @data
  | AMC DAMPING @END | AMC TABLE id 2 @data | AMC SET @data | AMC SET @END
117 ReaderMisc: Obligatory property 'Data' not defined. | AM CUBES count 1 format 0 @END | AMC SET count 1 id 1 @END
117 ReaderMisc: Obligatory property 'Format' not defined. | AM CUBES count 1 @data | AM CUBES count 1 @END
117 ReaderMisc: Obligatory property 'ID' not defined. | AMC TABLE @data | AMC TABLE count 2 @data
  | AMC SET count 1 @data
117 ReaderMisc: Obligatory property 'Timestep' not defined. | - ANALYSIS cellsize 1 @END
118 ReaderMisc: Numerical property value expected. | - ANALYSIS cellsize =^ @= 1
  | A MATERIALS 1 2 "a" 1 2 3 4 5 6 7 8 @"9" | AMC ACTUATOR factoru 1 factorv 2 factorw @x
  | AMC TABLE id 1 count 2 data 1 @x
119 ReaderMisc: Invalid proverty value provided. | - ANALYSIS cellsize @0 END | - ANALYSIS timestep @-1 END
  | - ANALYSIS starttime @-1e-9 END | - ANALYSIS roomtemperature @-273.16 END | AMC ACTUATOR start @-1
  | AMC ACTUATOR frequency @-1 | AMC ACTUATOR duration @0
119 SectionReader: Invalid proverty value provided. | AMC PIEZO start @214748364.8
  | - ANALYSIS cellsize 1 timestep -0.0 END MATERIALS END CUBES count 1 format 0 data END END PIEZO start ~1000
120 SectionReader: Invalid X coordinate value (or out of range). | AM1 CUBES count 2 format 0 ^data @32768 1 1 1
  | AMC2 SET id 1 count 2 ^data 1 1 1/@99999 1 1
120 PiezoReader: Invalid X coordinate value (or out of range). | AMC PIEZO count 1 data @4294967297 1 i
121 SectionReader: Invalid Y coordinate value (or out of range). | AM1 CUBES count 2 format 0 ^data 1 @-1 1 1
  | AMC1 SET id 1 count 2 ^data 1 @END
121 ReaderMisc: Invalid Y coordinate value (or out of range). | AMC PIEZO position 1 @x 1
122 SectionReader: Invalid Z coordinate value (or out of range). | AM2 CUBES count 2 format 0 ^data 1 1 1 1//1 1 @END
  | AMC1 DAMPING count 1 ^data 1 1 @32768 1 0.5 END
122 ReaderMisc: Invalid Z coordinate value (or out of range). | AMC SENSOR position 1 1 @END
123 ActuatorReader: Currently only the 'point' is supported. | AMC ACTUATOR shape @cube | AMC SENSOR shape =^ @cube
124 ActuatorReader: 'U', 'V', 'W' or 'All' expected. | AMC ACTUATOR direction U W @"v"
125 OutputReader: 'U', 'V', 'W' or 'M' expected. | AMC SENSOR output @1
126 OutputReader: 'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected. | AMC DUMP output u0 @"v0"
127 PiezoData: Piezo point position duplicated (-3,4). | AMC PIEZO count 2 data -3 4 i -3 4 @i
128 PiezoReader: Piezo direction not supported. | AMC PIEZO direction 1 1 @0 | AMC PIEZO direction 0 1 @5
  | AMC PIEZO direction 1 0 @1 | AMC PIEZO direction -1 0 @0 | AMC PIEZO direction 0 2 @0 | AMC PIEZO direction 0 0 @2
129 PiezoReader: 't' or 'i' expected. | AMC PIEZO count 1 data 1 1 @x
130 PiezoReader: Not enough piezo points defined (1 missing) | AMC PIEZO count 2 data -32768 1 T 1 1 1.7 @END
131 PiezoReader: Too many piezo points provided. | AMC PIEZO count 1 data 1 1 i 1 2 t 1 1 @1 END
132 ReaderMisc: Section name expected. | A @5 | A @END | A @"materials"
133 SectionReader: END keyword (section closing) expected. | AM CUBES count 1 format 0 data 1 1 1 1 ~.5
  | AMC ACTUATOR enabled 0 input 5 x\@ | AMC PIEZO enabled 0 data END table END x\@
  | AMC SET id 1 count 1 data 1 1 1 ~x
134 Reader: ANALYSIS section must be defined first. | - @MATERIALS END | - @DUMP END
135 Reader: ANALYSIS section already defined. | A @ANALYSIS END
136 Reader: ANALYSIS section not defined. | - %nothing\@
137 Reader: MATERIALS section expected here. | A @CUBES END | A @DAMPING END
138 Reader: MATERIALS section already defined. | AM @MATERIALS END
139 Reader: MATERIALS section not defined. | A @
140 Reader: CUBES section expected here. | AM @SET END
141 Reader: CUBES section already defined. | AMC @CUBES END
142 Reader: CUBES section not defined. | AM @
143 Reader: At least one ACTUATOR or one PIEZO must be defined. | AMCS @
144 Reader: At least one SENSOR or one DUMP must be defined. | AMCX @ | AMCP @
145 SectionReader: Natural number of [1..255] range expected as material index. | A MATERIALS @0 0
  | A MATERIALS @256 0 | A MATERIALS @4294967297 0 | A MATERIALS @ending
146 SectionReader: Specified material index reused. | A MATERIALS 3.9 0 "a" 1 1 1 @3 9
147 SectionReader: Natural number of [0..3] range expected as material definition format. | A MATERIALS 1 @-1
  | A MATERIALS 1 @4 | A MATERIALS 1 @4294967296
148 SectionReader: Material name expected. | A MATERIALS 1 0 @steel 1 1 1
149 SectionReader: Selected material definition format is not handled by this version of library.
  | A MATERIALS 1 3 @"a" x
150 SectionReader: Incorrect material index provided. | AM1 CUBES count 2 format 0 ^data 1 1 1 @256
  | AM1 CUBES count 2 format 0 ^data 1 1 1@ | AM1 CUBES count 2 format 0 ^data 1 1 1 @0
  | AMC1 DAMPING count 1 ^data 1 1 1 @0 0.5 END
151 SectionReader: Material no.2 is not defined. | AMC1 DAMPING count 1 ^data 1 1 1 @2 0.5 END
151 SectionReader: Material no.7 is not defined. | AM2 CUBES count 2 format 0 ^data 1 1 1 1/1 1 1 @7/
152 SectionReader: Invalid 'Format' property value, 0 or 1 is allowed. | AM CUBES format @2
  | AM CUBES format @4294967296 | AM CUBES format @x
154 SectionReader: Init values are not handled by current version of the library. | AM CUBES @init 5
155 SectionReader: Not enough cubes defined (1 missing) | AM2 CUBES count 2 format 0 data 1 1 1 1 ~-1 1 1 1
155 SectionReader: Not enough cubes defined (2 missing) | AMC1 DAMPING count 2 data ~x
  | AMC1 SET id 1 count 2 data ~-1 1 1
156 SectionReader: Too many cubes provided. | AM3 CUBES count 2 format 0 ^data 1 1 1 1/1 1 1 1 @1.5 END
  | AMC2 DAMPING count 1 data 1 1 1 1^ 0.5 @1 | AMC2 SET id 1 count 1 ^data 1 1 1 @2 2 2
157 TableReader: Not enough table elements defined (1 missing) | AMC TABLE id 1 count 3 data 1 2 @END END
157 TableReader: Not enough table elements defined (2 missing) | AMC TABLE id 1 count 3 data 1 2 3 END count 5 @END
158 TableReader: Too many table elements provided. | AMC TABLE id 1 count 2 data 1 2 @3
  | AMC TABLE id 1 count 2 data 1 2 @x
159 SectionReader: One or more obligatory properties were not defined. | AMC ACTUATOR @END
  | AMCT ACTUATOR table 1 shape point position 1 1 1 input definition method force @END
159 TableReader: One or more obligatory properties were not defined. | AMC TABLE id 1 count 1 @END
160 SectionReader: Table ID already specified in current section. | AMC ACTUATOR table 3 table @x
161 SectionReader: Table ID = 3 reused.
  | AMC PIEZO table id 3 count 1 data 1 END END table id 3 count 1 data 1 END @END
161 Reader: Table ID = 5 reused. | AMC TABLE id 5 count 1 data 1 END END TABLE id 5 count 1 data 1 END @END
162 Reader: Piezo ID = 2 reused.
  | AMCP PIEZO id 2 position 0 0 0 direction 1 0 0 method force count 1 data 0 0 i END @END
163 Reader: Sensor ID = 1 reused. | AMCS SENSOR id 1 shape point position 1 1 1 output u filename s @END
164 Reader: Dump ID = 9 reused. | AMC DUMP id 9 output all filename s END DUMP id 9 output all filename s @END
165 SectionReader: Append mode not allowed while creating MAT file.
  | AMC DUMP id 1 output all filename a fileformat mat writemode append @END
166 ReaderMisc: 'Definition' or 'Wave' expected. | AMC ACTUATOR input @1
167 ReaderMisc: 'Force' or 'Absolute' expected. | AMC PIEZO method @both
168 ReaderMisc: 'FullPulse', 'HalfPulse' or 'ContinuousWave' expected. | AMC ACTUATOR type =^ @pulse
169 ReaderMisc: 'Square', 'Sine' or 'Gaussian' expected. | AMC ACTUATOR waveform @cosine
170 ReaderMisc: 'None' or 'HannWindow' expected. | AMC ACTUATOR envelope @hann
171 ReaderMisc: 'None' or 'Invert' expected. | AMC ACTUATOR processing @0
172 ReaderMisc: 'Create', 'Append' or 'Overwrite' expected. | AMC SENSOR writemode @replace
173 ReaderMisc: 'Decimal' or 'Scientific' expected. | AMC DUMP notation @0
174 ReaderMisc: 'txt' or 'mat' expected. | AMC DUMP fileformat @"txt"
176 Reader: Piezo #1 requires table #5, but it is not defined.
  | AMCST PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 t 5 1 1 END
  table id 1 count 1 data 1 END END END\@
  | AMCS PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 t 7 5 6 END END\@
  | AMCS PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 t 8 9 5 END END\@
177 Reader: Table #1 is needed, but it is not defined.
  | AMCSW ACTUATOR shape point position 1 1 1 input wave method force table 5 END\@
  | AMCSX ACTUATOR table 1 enabled 0 END\@
178 ReaderMisc: Unknown keyword. | - ANALYSIS @cells 1 | - ANALYSIS cellsize 1\@ | AM CUBES @id 5
  | AMC DAMPING count 1 @format | AMC PIEZO @shape | AMC SENSOR output @X | AMC DUMP output u0 @u3
  | AMC DUMP @shape point
179 SectionReader: All piezo tables must contain the same samples count.
  | AMC PIEZO table id 3 count 1 data 1 END END table id 4 count 2 data 1 1 END @END
180 SectionReader: Numerical temperature value expected. | AM1 CUBES count 1 format 1 data 1 1 1 1^ @hot
181 SectionReader: Set ID = 4 reused. | AMC SET id 4 count 1 data 1 1 1 END END\SET id 4 count 1 data 2 2 2 ~END
  | AMC SET id 4 count 1 data 1 1 1 END data 2 2 2 @EN^D
183 SectionReader: Numerical damping coefficient value expected. | AMC1 DAMPING count 1 data 1 1 1 1^ @END
)");

TEST(ModelErrors, SayWhatAndWhere) {
    WriteFile("empty.model", "% nothing\n");
    for (const auto& group : table) {
        const std::string error = Replaced(group[0], "{dir}", ScratchDirectory() + '/');
        const std::size_t colon = error.find(": ");
        for (std::size_t i = 1; i < group.size(); ++i) {
            const std::string before = group[i].substr(0, group[i].find(' '));
            const std::size_t letters = before.find_first_of("-0123456789");
            const MarkedText marked(Sections(before.substr(0, letters)) + group[i].substr(before.size() + 1));
            for (const std::size_t size : {std::size_t{1}, Lexer::defaultBufferSize}) {
                SCOPED_TRACE(marked.text);
                const Outcome outcome = ReadText(marked.text, {false, true, size});
                EXPECT_EQ(std::to_string(outcome.code) + ' ' + outcome.file, error.substr(0, colon));
                EXPECT_EQ(outcome.what, LocatedMessage("m.model", marked.reported, error.substr(colon + 2)));
                EXPECT_EQ(ToText(outcome.place), ToText(marked.truth));
                EXPECT_EQ(outcome.place.path, ScratchDirectory() + "/m.model");
                EXPECT_EQ(outcome.row,
                          std::strtoull(before.substr(std::min(letters, before.size())).c_str(), nullptr, 10));
            }
        }
    }
}

/// Every message of the catalogue that a model file can bring about is in the table above, or comes from what is no
/// file: a directory (104) and an overlong path (175). There is no message 153, and none of a second DAMPING (182).
TEST(ModelErrors, CoverTheCatalogue) {
    std::set<int> raised = {153, 182, ReadPath(ScratchDirectory()).code, ReadPath(std::string(300, 'x')).code};
    for (const auto& group : table) raised.insert(std::stoi(group[0]));
    EXPECT_EQ(raised.size(), 183U - 102U + 1U);
    EXPECT_TRUE(*raised.begin() == 102 && *raised.rbegin() == 183);
}

}  // namespace
}  // namespace orvalo
