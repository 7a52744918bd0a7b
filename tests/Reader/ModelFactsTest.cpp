#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

/// Every section of its plainest kind, and what they are read to.
constexpr const char* allSections = "AMCGXWTPSDE";
constexpr const char* allFacts = R"(analysis 1 1e-07 0 25
steel 1 0 7800 5900 3200 7.9872e+10 1.11774e+11
actuator 1 1 1 -1
 drives 0 0 1 -1 -1
 by 1 2 0 100 0.04 0
 along 0 0 0 1 1 1
 with 1 0
actuator 1 1 1 -1
 drives 0 1 1 1 1
 by 0 0 0 0 0 0
 along 0 0 0 1 1 1
 with 1 0
piezo 0 0 0 1
 along 0 0 1
 with 0 1 1 0 1
  0 0 0 0 0 0
sensor 1 1 1 1 1
u s.txt 0 1 0
dump 0 0 0 1 1
u0v0w0u1v1w1u2v2w2 d.mat 0 1 0
requires 1 1
bounds 1 1 1 1 1 1
cube 1 1 1 1
damping 1 1 1 1 0.5
table -1 -1
 0
table 1 1
 1
 2
set 1 1
 1 1 1
)";

/// What `properties` at the end of a section, before its END, change: the lines that were not there before. The
/// comments quote the page on the format.
const struct {
    char section;
    const char* properties;
    const char* changed;
} facts[] = {
    // ANALYSIS. "microseconds"; "Where a property is given twice, the last one counts, unless said otherwise."
    {'A', "cellsize 2 CellSize = 0.5 starttime 2.3", "analysis 0.5 1e-07 2.2999999999999996e-06 25\n"},
    {'A', "timestep 0.05 roomtemperature -273.15", "analysis 1 5e-08 0 -273.15\n"},
    // MATERIALS. "Where a whole number is asked for, the fraction is cut off, so 3.9 is 3."; "wave speeds are derived";
    // "Names stand in double quotes and are lower-cased"; "The values themselves are not judged."
    {'M', "3.9 1 \"My Al\" 2 18 0", "myal 3 0 2 3 2.1213203435596424 9 3.552713678800501e-15\n"},
    {'M', "255 2 \"t\" 1 2 3 4 5 6 7 8 9", "t 255 1 0 0 0 0 0\nby T 1 2 3 4 5 6 7 8 9\n"},
    {'M', "2 0 \"\" -1 0 0", " 2 0 -1 0 0 -0 -0\n"},
    // CUBES. "Fewer are not, as long as END follows: the rest of the grid is then zero."
    {'C', "count 2.9 format = 1 data 5 6 7 1 -2.5e1 END",
     "bounds 1 5 1 6 1 7\ncube 5 6 7 1\nat -25\ncube 0 0 0 0\nat 0\n"},
    // "A position may occur twice; nothing checks for it." Unlike temperatures, a plain grid has no room for any.
    {'C', "count 2 data 3 0 32767 1 3 0 32767 1 END", "bounds 1 3 0 1 1 32767\ncube 3 0 32767 1\ncube 3 0 32767 1\n"},
    // DAMPING. "A further DAMPING section replaces the one before."
    {'G', "END DAMPING count 2 data 4 5 6 1 -  2 END", "bounds 1 4 1 5 1 6\ndamping 4 5 6 1 -2\ndamping 0 0 0 0 0\n"},
    // ACTUATOR. "one or more of `U`, `V`, `W`, `All`"; "none if not given"
    {'X', "direction v u", " along 1 1 0 1 1 1\n"},
    {'X', "direction w direction = W v", " along 0 1 1 1 1 1\n"},
    {'X', "direction v direction ALL", " along 1 1 1 1 1 1\n"},
    {'X', "direction v direction", ""},
    {'X', "factoru 2 factorv -3 factorw 4", " along 0 0 0 2 -3 4\n"},
    {'X', "amplitude -3 processing invert", " with -3 1\n"},
    {'X', "processing invert processing none", ""},
    {'X', "type halfpulse waveform square envelope hannwindow frequency 3 phase -90", " by 2 1 1 3 0.04 -90\n -1\n"},
    {'X', "type continuouswave waveform gaussian phase 90 waveform sine duration 0.03", " by 3 2 0 100 0.03 90\n 1\n"},
    // "Positions are whole numbers from -32768 to 32767."
    {'X', "position -32768 32767 7.9", "actuator -32768 32767 7 -1\n"},
    {'X', "table 1", " drives 0 0 1 1 1\n"},
    {'W', "method absolute start 0.12 enabled 1", " drives -2 1 2 1 1\n"},
    {'W', "start 3 start 214748364.6", " drives -2147483646 1 1 1 1\n"},
    // TABLE. "Samples are ordinary numbers, one per time step; comments may stand among them."
    {'T', "count = 3 data -1e-3 % 7\n - 5 5. END", " -0.001\n -5\n 5\n"},
    // "IDs are whole numbers from 1 to 2147483647"; all tables are listed as if some actuator required them.
    {'T', "END TABLE id = 2147483647.9 count 1 data 9 END", "requires 2147483647 1\ntable 2147483647 2147483647\n 9\n"},
    // PIEZO. "the axis across the patch"; "With the IDs of the tables for the three components, or `x y i`"
    {'P', "id 3 position 1 2 -3 direction 0 1 0 method absolute amplitude 2.5 start 1",
     "piezo 1 2 -3 3\n along 0 1 0\n with -10 2 2.5 0 1\n"},
    {'P', "direction 1 0 0 start 5 start 0", " along 1 0 0\n"},
    {'P',
     "table id 70001 count 2 data 1 2 END END count = 4 data 5 0 T 70001 5 6  -1 0 i  0 1 i  -32768 32767.9 t 5 6 5 "
     "END table id 5 count 2 data 3 4 END END table id 6 count 2 data 5 6 END END",
     " with 0 1 1 2 4\n  5 5 0 4465 5 6\n  65535 -1 0 0 0 0\n  65536 0 1 0 0 0\n  2147450880 -32768 32767 5 6 5\n"
     " uses 5 1\n uses 6 1\n uses 70001 1\ntable 5 5\n 3\n 4\ntable 6 6\n 5\n 6\ntable 70001 70001\n 1\n 2\n"},
    // SENSOR and DUMP. "some of `U`, `V`, `W`, `M`"; "`create`, `append` or `overwrite`"
    {'S', "id 4294967298 position 1 2 -3 output = U U w v m filename \"A b.TXT\" writemode create notation decimal",
     "sensor 1 2 -3 2 2\nuuwvm ab.txt 1 0 0\n"},
    {'S', "filename 1.5E3 writemode append notation scientific", "u 1.5e3 2 1 0\n"},
    {'S', "filename \"include\" output", " include 0 1 0\n"},
    {'D', "output All U0 fileformat mat", "u0v0w0u1v1w1u2v2w2u0 d.mat 0 1 1\n"},
    {'D', "output u1 output V2 W0 fileformat mat writemode append fileformat txt", "v2w0 d.mat 2 1 0\n"},
    {'D', "output U0 All filename ==", "u0v0w0u1v1w1u2v2w2 = 0 1 0\n"},
    // SET. "ID; here without `=`"
    {'E', "id 3.9 count = 2 data 10 20 30\n40 50 32767 END", "set 3 3\n 10 20 30\n 40 50 32767\n"},
    {'E', "id 3 count 2 data 7 8 9 END", "set 3 3\n 7 8 9\n 0 0 0\n"},
};

/// The lines of `text` that are not in `plain`.
std::string Added(const std::string& text, const std::string& plain) {
    std::multiset<std::string> known;
    std::istringstream before(plain);
    std::istringstream after(text);
    for (std::string line; std::getline(before, line);) known.insert(line);
    std::string added;
    for (std::string line; std::getline(after, line);) {
        if (const auto found = known.find(line); found == known.end())
            added += line + '\n';
        else
            known.erase(found);
    }
    return added;
}

TEST(ModelFacts, OfEverySection) {
    const std::string plain = ShowModel(*ReadText(Sections(allSections)).model);
    EXPECT_EQ(plain, allFacts);
    for (const auto& [section, properties, changed] : facts) {
        std::string text;
        for (const char letter : std::string(allSections)) {
            text += Sections(std::string(1, letter));
            if (letter == section) text.insert(text.rfind("END"), std::string(properties) + '\n');
        }
        for (const std::size_t size : {std::size_t{64}, Lexer::defaultBufferSize}) {
            const Outcome outcome = ReadText(text, {false, true, size});
            EXPECT_EQ(outcome.code == 0 ? Added(ShowModel(*outcome.model), plain) : outcome.what, changed)
                << properties;
        }
    }
}

/// "required", and "after `enabled 0` the rest of the section is skipped unread, up to its END, and the section counts
/// as absent".
TEST(ModelFacts, NeedWhatIsRequired) {
    const std::string rest = Sections("AMCXSTE");
    const std::string plain = ShowModel(*ReadText(rest).model);
    for (const std::vector<std::string>& section : std::initializer_list<std::vector<std::string>>{
             {"ACTUATOR", "shape point", "position 1 1 1", "input definition", "method force", "type fullpulse",
              "waveform sine", "envelope none", "frequency 1", "duration 0.05", "phase 0"},
             {"ACTUATOR", "shape point", "position 1 1 1", "input wave", "method force", "table 1"},
             {"PIEZO", "id 1", "position 0 0 0", "direction 0 0 1", "method force", "count 1 data 0 0 i END"},
             {"SENSOR", "id 7", "shape point", "position 1 1 1", "output u", "filename a"},
             {"DUMP", "id 7", "output u0", "filename a"}}) {
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

TEST(ModelFacts, Grid) {
    const std::string materials = Sections("A") + "MATERIALS 7 0 \"a\" 1 1 1 255 0 \"b\" 1 1 1 2 0 \"c\" 1 1 1 END\n";
    const struct {
        bool cubesOnly;
        const char* text;
        const char* grid;
    } table[] = {
        // Vector indices in a whole model, numbers as written when only cubes are read.
        {false, "CUBES count 3 format 0 data 3 1 1 7\n1 5 2 2\n32767 0 300 255 END END",
         "bounds 1 32767 0 5 1 300\ncube 3 1 1 1\ncube 1 5 2 3\ncube 32767 0 300 2\n"},
        {true, "CUBES count 2 format 0 data 3 1 1 7\n1 5 2 9 END END",
         "bounds 1 3 1 5 1 2\ncube 3 1 1 7\ncube 1 5 2 9\n"},
        // Of a short list the rest is zero, and no part of the bounds.
        {true, "CUBES count 2.9 format 1 data 5 6 7 8 -2.5e1 END END",
         "bounds 5 5 6 6 7 7\ncube 5 6 7 8\nat -25\ncube 0 0 0 0\nat 0\n"},
        {true, "CUBES format = 1 count = 1 data END count 5 END", "cube 0 0 0 0\nat 0\n"},
        {true, "DAMPING count 2 data 4 4 4 1 -  2 END END CUBES count 1 format 0 data 1 1 1 1 END END",
         "bounds 1 4 1 4 1 4\ncube 1 1 1 1\ndamping 4 4 4 1 -2\ndamping 0 0 0 0 0\n"},
        // Later sections and blocks replace earlier ones; the bounds remember all.
        {true, "CUBES count 1 format 1 data 1 1 1 1 9 END END CUBES count 1 format 0 data 2 2 2 2 END END",
         "bounds 1 2 1 2 1 2\ncube 2 2 2 2\n"},
        {true, "CUBES count 1 format 0 data 3 3 3 3 END format 1 count 1 data 2 2 2 2 8 END END",
         "bounds 2 3 2 3 2 3\ncube 2 2 2 2\nat 8\n"},
        {false,
         "CUBES count 1 format 0 data 1 1 1 2 END END DAMPING count 1 data 1 1 1 2 1 END END DAMPING count 1 data "
         "2 2 2 255 3 END END",
         "bounds 1 2 1 2 1 2\ncube 1 1 1 3\ndamping 2 2 2 2 3\n"},
        // Wherever the keywords stand, and whatever else is not read. Numbers of 32 bits wrap.
        {true, "SENSOR id 0 cubes count 1 format 0 data 4294967297 2 3 4294967300 END END",
         "bounds 1 1 2 2 3 3\ncube 1 2 3 4\n"},
    };
    for (const auto& row : table) {
        const Outcome outcome =
            ReadText((row.cubesOnly ? "" : materials) + row.text + "\r\n" + Sections("XS"), {row.cubesOnly, true, 64});
        EXPECT_EQ(outcome.code == 0 ? ShowGrid(*outcome.model) : outcome.what, row.grid) << row.text;
        EXPECT_EQ(outcome.model->tables.size(), row.cubesOnly ? 0U : 1U);
    }
}

/// The samples of waveforms: their number, and the first one, those a third and a half of the way, and the last.
TEST(ModelFacts, GeneratedTables) {
    const struct {
        const char* timeStep;
        const char* definition;
        std::size_t count;
        double samples[4];
    } table[] = {
        // "as many samples as time steps are needed for its duration"; "one period in the duration"
        {"0.5",
         "type fullpulse waveform sine envelope hannwindow frequency 7 duration 10.2 phase 30",
         21,
         {0.49999999999999994, 0.44573835577653836, -0.4457383557765386, 0.38978587329268216}},
        {"0.1",
         "type halfpulse waveform sine envelope none frequency 7 duration 10 phase 10",
         101,
         {0.17364817766693033, 0.936059535738973, 0.9848077530122084, -0.17364817766693308}},
        {"0.5", "type fullpulse waveform square envelope none frequency 0 duration 10 phase 0", 20, {1, 1, 1, -1}},
        // "only the continuous wave uses the frequency, and only it is shaped by the Hann window"
        {"0.25",
         "type continuouswave waveform square envelope hannwindow frequency 100 duration 40 phase -45",
         160,
         {-0.0, 0.7443106207484765, -1.0, -0.0003854818796388271}},
        {"0.25",
         "type continuouswave waveform sine envelope none frequency 123.4 duration 7 phase 90",
         28,
         {1.0, -0.17285746744932415, -0.9098454311981998, 0.4979126824650314}},
        // "a bell over the duration whatever the type"
        {"0.25",
         "type continuouswave waveform gaussian envelope hannwindow frequency 100 duration 8 phase 90",
         32,
         {0.006737946999085469, 0.4950358969261987, 1.0, 0.012344665531384705}},
        {"1e9", "type fullpulse waveform sine envelope none frequency 0 duration 1e-9 phase 90", 1, {1, 1, 1, 1}},
    };
    for (const bool doubles : {true, false}) {
        for (const auto& [timeStep, definition, count, samples] : table) {
            const std::string actuator =
                std::string("ACTUATOR shape point position 1 1 1 input definition method force amplitude 9 ") +
                definition + " END\r\n";
            const Outcome outcome =
                ReadText(Replaced(Sections("A"), "0.1", timeStep) + Sections("MCST") + actuator + actuator,
                         {false, doubles, 64});
            ASSERT_EQ(outcome.what, "") << definition;
            const Table& generated = *outcome.model->tables.at(-2);
            EXPECT_EQ(generated.count, count);
            EXPECT_EQ(generated.id, -2);
            EXPECT_EQ(generated.doublePrecision, doubles);
            for (const std::size_t i : {0, 1, 2, 3}) {
                const double sample = generated.Get(i == 0 ? 0 : i == 3 ? count - 1 : count / (4 - i));
                // Both compare within 4 units in the last place, as far as mathematics libraries may differ.
                if (doubles)
                    EXPECT_DOUBLE_EQ(sample, samples[i]) << definition;
                else
                    EXPECT_FLOAT_EQ(static_cast<float>(sample), static_cast<float>(samples[i])) << definition;
            }
        }
    }
}

/// "A time step of 0 is accepted, but no signal can be generated from it." Every start but 0 is then out of reach.
TEST(ModelFacts, NoTimeStep) {
    const std::string text =
        "ANALYSIS cellsize 1 timestep 0 END\r\n" + Sections("MCS") + Replaced(Sections("P"), "PIEZO", "PIEZO start 0");
    EXPECT_EQ(ReadText(text).model->piezos.at(0)->start, 0);
    EXPECT_EQ(ReadText(Replaced(text, "start 0", "start 1")).code, 119);
    EXPECT_EQ(ReadText(text + Sections("X")).what, "Error in file \"m.model\", line 7, column 1:\nOut of memory.");
}

}  // namespace
}  // namespace orvalo
