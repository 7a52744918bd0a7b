#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

/// Every section of its plainest kind, in the order of the letters, and what it is read to. After it for each section
/// what properties before its END change: the lines of the model, as it is shown, that were not there before. The
/// comments quote the page on the model format.
constexpr const char* allSections = "AMCGXWTPSDE";
const auto facts = Rows(R"(
- | - | analysis 1 1e-07 0 25/steel 1 0 7800 5900 3200 7.9872e+10 1.11774e+11/actuator 1 1 1 -1/drives 0 0 1 -1 -1
  /by 1 2 0 100 0.04 0/along 0 0 0 1 1 1/with 1 0/actuator 1 1 1 -1/drives 0 1 1 1 1/by 0 0 0 0 0 0/along 0 0 0 1 1 1
  /with 1 0/piezo 0 0 0 1/along 0 0 1/with 0 1 1 0 1/0 0 0 0 0 0/sensor 1 1 1 1 1/u s.txt 0 1 0/dump 0 0 0 1 1
  /u0v0w0u1v1w1u2v2w2 d.mat 0 1 0/requires 1 1/bounds 1 1 1 1 1 1/cube 1 1 1 1/damping 1 1 1 1 0.5/table -1 -1/0
  /table 1 1/1/2/set 1 1/1 1 1
//
// ANALYSIS. "`word value` or `word = value`, in any order"; "Where a property is given twice, the last one counts"
A | cellsize 2 CellSize = 0.5 starttime 2.3 | analysis 0.5 1e-07 2.2999999999999996e-06 25
A | timestep 0.05 roomtemperature -273.15 | analysis 1 5e-08 0 -273.15
//
// MATERIALS. "the fraction is cut off, so 3.9 is 3"; "wave speeds are derived"; names "are lower-cased"; "Blanks, tabs,
// commas and comment signs in a name are dropped"; "The values of a material are not judged"
M | 3.9 1 "My, ;Al" 2 18 0 | myal 3 0 2 3 2.1213203435596424 9 3.552713678800501e-15
M | 255 2 "t" 1 2 3 4 5 6 7 8 9 | t 255 1 0 0 0 0 0/by T 1 2 3 4 5 6 7 8 9
M | 2 0 "" -1 0 0 | 2 0 -1 0 0 -0 -0
//
// CUBES. "Fewer are not, as long as END follows: the missing ones are then zero"; "They do not widen the grid"; "the row
// `1 1 1 4.5` is material 4 at 0.5 degrees"; "A position may occur twice"
C | count 2.9 format = 1 data 5 6 7 1.5 END | bounds 1 5 1 6 1 7/cube 5 6 7 1/at 0.5/cube 0 0 0 0/at 0
C | count 2 data 3 0 32767 1 3 0 32767 1 END | bounds 1 3 0 1 1 32767/cube 3 0 32767 1/cube 3 0 32767 1
//
// DAMPING. "A further DAMPING section replaces the one before"; "They widen its bounds"; "`- 5` is one number"
G | END DAMPING count 2 data 4 5 6 1 -  2 END | bounds 1 4 1 5 1 6/damping 4 5 6 1 -2/damping 0 0 0 0 0
//
// ACTUATOR. "one or more of `U`, `V`, `W`, `All`"; "A `direction` without a component passes, and is the same as none
// given"; "any number"; positions "from -32768 to 32767"
X | direction v u | along 1 1 0 1 1 1
X | direction w direction = W v | along 0 1 1 1 1 1
X | direction v direction ALL | along 1 1 1 1 1 1
X | direction v direction
X | factoru 2 factorv -3 factorw 4 | along 0 0 0 2 -3 4
X | amplitude -3 processing invert position -32768 32767 7.9 | actuator -32768 32767 7 -1/with -3 1
X | processing invert processing none
X | type halfpulse waveform square envelope hannwindow frequency 3 phase -90 | by 2 1 1 3 0.04 -90/-1
X | type continuouswave waveform gaussian phase 90 waveform sine duration 0.03 | by 3 2 0 100 0.03 90/1
// "An actuator by `definition` that also has a `table` is driven by the table, and nothing is generated."
X | table 1 | drives 0 0 1 1 1
// "The `start` [...] is rounded up to whole time steps"
W | method absolute start 0.12 enabled 1 | drives -2 1 2 1 1
W | start 3 start 214748364.6 | drives -2147483646 1 1 1 1
//
// TABLE. "comments may stand among them"; "IDs are whole numbers from 1 to 2147483647"; "One that no actuator names does
// no harm." It is listed as if one required it.
T | count = 3 data -1e-3 % 7/ - 5 5. END | -0.001/-5/5
T | END TABLE id = 2147483647.9 count 1 data 9 END | requires 2147483647 1/table 2147483647 2147483647/9
//
// PIEZO. "the axis of the patch"; "the IDs of the tables for the three components, or `x y i`"; "Of a table ID above
// 65535 a point keeps the low 16 bits"; "A second `data` adds its points to those of the first"
P | id 3 position 1 2 -3 direction 0 1 0 method absolute amplitude 2.5 start 1
  | piezo 1 2 -3 3/along 0 1 0/with -10 2 2.5 0 1
P | direction 1 0 0 start 5 start 0 | along 1 0 0
// "In a PIEZO each `data` and `table` still has an END of its own"; "A disabled PIEZO does not count"
P | END PIEZO enabled 0 data x END table y END 5
P | table id 70001 count 2 data 1 2 END END count = 4 data 5 0 T 70001 5 6  -1 0 i  0 1 i  -32768 32767.9 t 5 6 5 END
  table id 5 count 2 data 3 4 END END table id 6 count 2 data 5 6 END END
  | with 0 1 1 2 4/5 5 0 4465 5 6/65535 -1 0 0 0 0/65536 0 1 0 0 0/2147450880 -32768 32767 5 6 5/uses 5 1/uses 6 1
  /uses 70001 1/table 5 5/3/4/table 6 6/5/6/table 70001 70001/1/2
//
// SENSOR and DUMP. "some of `U`, `V`, `W`, `M`"; "Components are kept in the order written, repeated ones too"; "An empty
// `output` passes"; "`All` is all nine and replaces those before it"; "`filename` is one word or number"
S | id 4294967298 position 1 2 -3 output = U U w v m filename "A b.TXT" writemode create notation decimal
  | sensor 1 2 -3 2 2/uuwvm ab.txt 1 0 0
S | filename 1.5E3 writemode append notation scientific | u 1.5e3 2 1 0
S | filename "include" output | include 0 1 0
D | output All U0 fileformat mat | u0v0w0u1v1w1u2v2w2u0 d.mat 0 1 1
D | output u1 output V2 W0 fileformat mat writemode append fileformat txt | v2w0 d.mat 2 1 0
D | output U0 All filename == | u0v0w0u1v1w1u2v2w2 = 0 1 0
//
// SET. "ID; here without `=`"; "as lenient about a list that ends early"
E | id 3.9 count = 2 data 10 20 30/40 50 32767 END | set 3 3/10 20 30/40 50 32767
E | id 3 count 2 data 7 8 9 END | set 3 3/7 8 9/0 0 0
)");

/// The lines of `text` that are not in `plain`, without the blanks that they begin with.
std::string Added(const std::string& text, const std::string& plain) {
    const std::vector<std::string> before = Split(plain, "\n");
    std::multiset<std::string> known(before.begin(), before.end());
    std::string added;
    for (const std::string& line : Split(text, "\n")) {
        if (const auto found = known.find(line); found != known.end()) {
            known.erase(found);
        } else {
            added += (added.empty() ? "" : "\n") + line.substr(line.find_first_not_of(' '));
        }
    }
    return added;
}

TEST(ModelFacts, OfEverySection) {
    std::string plain = "\n";
    for (const auto& row : facts) {
        std::string text;
        for (const char letter : std::string(allSections)) {
            text += Sections(std::string(1, letter));
            if (letter == row[0][0]) text.insert(text.rfind("END"), row[1] + '\n');
        }
        for (const std::size_t size : {std::size_t{64}, Lexer::defaultBufferSize}) {
            const Outcome outcome = ReadText(text, {false, true, size});
            EXPECT_EQ(outcome.code == 0 ? Added(ShowModel(*outcome.model), plain) : outcome.what,
                      row.size() > 2 ? Replaced(row[2], " \n", "\n") : "")
                << row[1];
        }
        if (row[0] == "-") plain = ShowModel(*ReadText(text).model);
    }
}

/// "required"; "After `enabled 0` the rest of the section is not parsed, and the section counts as absent."
TEST(ModelFacts, NeedWhatIsRequired) {
    const std::string rest = Sections("AMCXSTE");
    const std::string plain = ShowModel(*ReadText(rest).model);
    for (const auto& section : Rows(R"(
ACTUATOR | shape point | position 1 1 1 | input definition | method force | type fullpulse | waveform sine
  | envelope none | frequency 1 | duration 0.05 | phase 0
ACTUATOR | shape point | position 1 1 1 | input wave | method force | table 1
PIEZO | id 1 | position 0 0 0 | direction 0 0 1 | method force | count 1 data 0 0 i END
SENSOR | id 7 | shape point | position 1 1 1 | output u | filename a
DUMP | id 7 | output u0 | filename a
)")) {
        for (std::size_t place = 1; place <= section.size(); ++place) {
            std::string without = rest + section[0];
            std::string disabled = without;
            for (std::size_t i = 1; i < section.size(); ++i) {
                if (i != place) without += ' ' + section[i];
                disabled += (i == place ? " enabled 0 x 5 " : " ") + section[i];
            }
            if (place == section.size()) disabled += " enabled 0";
            EXPECT_EQ(ReadText(without + " END").code, place == section.size() ? 0 : 159) << without;
            EXPECT_EQ(ShowModel(*ReadText(disabled + " END").model), plain) << disabled;
        }
    }
}

/// Grids of which whole models hold vector indices of materials, and those read alone the numbers: "Material numbers
/// are kept as written, 1 to 255, and need no definition."
TEST(ModelFacts, Grid) {
    for (const auto& row : Rows(R"(
ANALYSIS cellsize 1 timestep 1 END MATERIALS 7 0 "a" 1 1 1 255 0 "b" 1 1 1 2 0 "c" 1 1 1 END
  CUBES count 3 format 0 data 3 1 1 7/1 5 2 2/32767 0 300 255 END END DAMPING count 1 data 1 1 1 255 1 END END
  | bounds 1 32767 0 5 1 300/cube 3 1 1 1/cube 1 5 2 3/cube 32767 0 300 2/damping 1 1 1 2 1
CUBES count 2 format 0 data 3 1 1 7/1 5 2 9 END END | bounds 1 3 1 5 1 2/cube 3 1 1 7/cube 1 5 2 9
CUBES format = 1 count = 1 data END count 5 END | cube 0 0 0 0/at 0
// "It needs a CUBES section; all others may be missing, incomplete or out of order."
DAMPING count 1 data 4 4 4 255 -2 END END CUBES count 1 format 0 data 1 1 1 1 END END
  | bounds 1 4 1 4 1 4/cube 1 1 1 1/damping 4 4 4 255 -2
// "A further CUBES section replaces the one before"; "Rows that others replaced have widened the bounds too"
CUBES count 1 format 1 data 1 1 1 1 9 END END CUBES count 1 format 0 data 2 2 2 2 END END
  | bounds 1 2 1 2 1 2/cube 2 2 2 2
CUBES count 1 format 0 data 3 3 3 3 END format 1 count 1 data 2 2 2 2 8 END END | bounds 2 3 2 3 2 3/cube 2 2 2 2/at 8
// "The words CUBES and DAMPING begin a section wherever they stand [...]. Names in quotes do not"; "The whole numbers of
// rows wrap at 2^32 before they are checked"
SENSOR id 0 "cubes" "damping" cubes count 1 format 0 data 4294967297 2 3 4294967300 END END
  | bounds 1 1 2 2 3 3/cube 1 2 3 4
)")) {
        const bool cubesOnly = row[0][0] != 'A';
        const Outcome outcome = ReadText(row[0] + "\r\n" + Sections("XS"), {cubesOnly, true, 64});
        EXPECT_EQ(outcome.code == 0 ? ShowGrid(*outcome.model) : outcome.what, row[1] + '\n') << row[0];
        EXPECT_EQ(outcome.model->tables.size(), cubesOnly ? 0U : 1U);
    }
}

/// Waveforms: the time step, the definition, "`ceil(duration / timestep)` samples", and of the samples the first one,
/// those a third and a half of the way, and the last. "Generated samples agree within 4 ulp between machines".
TEST(ModelFacts, GeneratedTables) {
    for (const auto& row : Rows(R"(
// "one period in the duration"; "half a period in the duration"; "1 where that sine is 0 or more, -1 elsewhere"
0.5 | type fullpulse waveform sine envelope hannwindow frequency 7 duration 10.2 phase 30 | 21
  | 0.49999999999999994 | 0.44573835577653836 | -0.4457383557765386 | 0.38978587329268216
0.1 | type halfpulse waveform sine envelope none frequency 7 duration 10 phase 10 | 101
  | 0.17364817766693033 | 0.936059535738973 | 0.9848077530122084 | -0.17364817766693308
0.5 | type fullpulse waveform square envelope none frequency 0 duration 10 phase 0 | 20 | 1 | 1 | 1 | -1
// "only here does `hannwindow` multiply the sample"
0.25 | type continuouswave waveform square envelope hannwindow frequency 100 duration 40 phase -45 | 160
  | -0.0 | 0.7443106207484765 | -1 | -0.0003854818796388271
0.25 | type continuouswave waveform sine envelope none frequency 123.4 duration 7 phase 90 | 28
  | 1 | -0.17285746744932415 | -0.9098454311981998 | 0.4979126824650314
// "whatever the type, frequency, phase and envelope"
0.25 | type continuouswave waveform gaussian envelope hannwindow frequency 100 duration 8 phase 90 | 32
  | 0.006737946999085469 | 0.4950358969261987 | 1 | 0.012344665531384705
1e9 | type fullpulse waveform sine envelope none frequency 0 duration 1e-9 phase 90 | 1 | 1 | 1 | 1 | 1
)")) {
        const std::string actuator =
            "ACTUATOR shape point position 1 1 1 input definition method force amplitude 9 " + row[1] + " END\n";
        const std::string text = Replaced(Sections("A"), "0.1", row[0]) + Sections("MCST") + actuator + actuator;
        const Table doubles = *ReadText(text, {false, true, 64}).model->tables.at(-2);
        const Table floats = *ReadText(text, {false, false, 64}).model->tables.at(-2);
        const std::size_t count = std::stoul(row[2]);
        EXPECT_EQ(Line("", doubles.id, doubles.count, doubles.doublePrecision), Line("", -2, count, 1)) << row[1];
        EXPECT_EQ(Line("", floats.id, floats.count, floats.doublePrecision), Line("", -2, count, 0)) << row[1];
        for (const std::size_t i : {std::size_t{0}, count / 3, count / 2, count - 1}) {
            const std::size_t field = i == 0 ? 3 : i == count - 1 ? 6 : i == count / 3 ? 4 : 5;
            EXPECT_DOUBLE_EQ(doubles.Get(i), std::stod(row[field])) << row[1];
            EXPECT_FLOAT_EQ(static_cast<float>(floats.Get(i)), std::stof(row[field])) << row[1];
        }
    }
}

TEST(ModelFacts, GeneratedTablesOfSeveralThreads) {
    const std::string text = Replaced(Sections("AMCXS"), "timestep 0.1", "timestep 3e-7");
    for (const bool asDoubles : {true, false}) {
        const std::shared_ptr<Model> one = ReadText(text, {false, asDoubles, 64, 1}).model;
        const std::shared_ptr<Model> three = ReadText(text, {false, asDoubles, 64, 3}).model;
        EXPECT_GT(one->tables.at(-1)->count, 100'000U);
        EXPECT_TRUE(ShowModel(*one) == ShowModel(*three));
    }
}

/// "A time step of 0 is accepted [...]. Then any `start` but 0 is an error, and so is a generated signal."
TEST(ModelFacts, NoTimeStep) {
    const std::string text = Replaced(Sections("AMCS"), "0.1", "0") + Replaced(Sections("P"), "PIEZO", "PIEZO start 0");
    EXPECT_EQ(ReadText(text).model->piezos.at(0)->start, 0);
    EXPECT_EQ(ReadText(Replaced(text, "start 0", "start 1")).code, 119);
    EXPECT_EQ(ReadText(text + Sections("X")).what, "Error in file \"m.model\", line 7, column 1:\nOut of memory.");
}

}  // namespace
}  // namespace orvalo
