#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

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

/// Every part of a model but the tables of excitations by definition is read from this as wholeFacts tells.
constexpr const char* wholeModel = R"(
analysis CellSize = 0.001 cellsize 2 timestep 0.05 starttime 2000000 ROOMTEMPERATURE -273.15 End
MATERIALS 7 0 "My Steel" 7800 5900 3200
    3.9 1 "al" 2 18 0  255 2 "t" 1 2 3 4 5 6 7 8 9  1 0 "" -1 0 0 end
CUBES count 1 format 0 data 1 1 1 1 END END
ACTUATOR enabled 1 shape = point position -5 6 7.9 input wave table 2 method absolute start 0.12 direction U W
    amplitude -3 factoru 2 factorv 3 factorw 4 processing invert END
ACTUATOR enabled 0 shape cube data END
ACTUATOR input definition shape point position 1 2 3 method force type continuouswave waveform square
    envelope hannwindow frequency 1 duration 0.03 phase 90 direction all direction v start 0 END
ACTUATOR direction = shape point position 1 1 1 input wave table 3 method force start 107374182.35 END
PIEZO enabled 0 data x END table y END 5 END
PIEZO id 3 position 1 2 -3 direction 0 1 0 method absolute amplitude 2.5 start 1
    table id 70001 count 2 data 1 2 END END
    count = 4 data 5 0 T 70001 5 5  -1 0 i  0 1 i  -32768 32767.9 t 5 5 5 END
    table id 5 count 2 data 3 4 END END END
SENSOR enabled 0 id 1 shape cube END
SENSOR id 4294967298 shape point position 1 2 3 output = U U m filename "A b.TXT" writemode create notation decimal
    fileformat txt END
SENSOR id 1 output shape point position 1 2 3 filename = 1.5E3 writemode append END
DUMP id 9 output All U0 filename F fileformat mat writemode overwrite END
DUMP id 8 output U0 All filename == END
TABLE count 3 id = 2.7 data 0.1 -1e-3 - 5 END END
TABLE id 3 count 2 data 1 2 END count 1 data 9 END END
SET count = 2 id 3.9 data 10 20 30
40 50 32767 END END
SET id 1 count 2 data 7 8 9 END END)";

constexpr const char* wholeFacts = R"(analysis 2 5e-08 2 -273.15
mysteel 7 0 7800 5900 3200 7.9872e+10 1.11774e+11
al 3 0 2 3 2.1213203435596424 9 3.552713678800501e-15
t 255 1 0 0 0 0 0
by T 1 2 3 4 5 6 7 8 9
 1 0 -1 0 0 -0 -0
actuator -5 6 7 -1
 drives -3 1 2 2 2
 by 0 0 0 0 0 0
 along 1 0 1 2 3 4
 with -3 1
actuator 1 2 3 -1
 drives 0 0 1 -1 -1
 by 3 1 1 1 0.03 90
 along 0 1 0 1 1 1
 with 1 0
actuator 1 1 1 -1
 drives -2147483647 1 1 3 3
 by 0 0 0 0 0 0
 along 0 0 0 1 1 1
 with 1 0
piezo 1 2 -3 3
 along 0 1 0
 with -20 2 2.5 2 4
  5 5 0 4465 5 5
  65535 -1 0 0 0 0
  65536 0 1 0 0 0
  2147450880 -32768 32767 5 5 5
 uses 5 1
 uses 70001 1
table 5 5
 3
 4
table 70001 70001
 1
 2
sensor 1 2 3 1 1
 1.5e3 2 1 0
sensor 1 2 3 2 2
uum ab.txt 1 0 0
dump 0 0 0 8 8
u0v0w0u1v1w1u2v2w2 = 0 1 0
dump 0 0 0 9 9
u0v0w0u1v1w1u2v2w2u0 f 0 1 1
requires 2 1
requires 3 1
bounds 1 1 1 1 1 1
cube 1 1 1 4
table -1 -1
 0
table 2 2
 0.1
 -0.001
 -5
table 3 3
 9
set 1 1
 7 8 9
 0 0 0
set 3 3
 10 20 30
 40 50 32767
)";

TEST(ModelFacts, Whole) {
    EXPECT_EQ(ShowModel(*ReadText(wholeModel, {false, true, 64}).model), wholeFacts);
    EXPECT_EQ(ReadText(wholeModel).what, "");
}

struct Wave {
    double timeStep;
    std::string type;
    std::string waveform;
    std::string envelope;
    double frequency;
    double duration;
    double phase;
    std::size_t count;
};

/// The samples of a waveform, in seconds and hertz.
std::vector<double> Samples(const Wave& wave) {
    const double dt = wave.timeStep * 1e-6;
    const double length = wave.duration / 1e6;
    double f = wave.frequency * 1000.0;
    if (wave.type == "fullpulse") f = 1.0 / length;
    if (wave.type == "halfpulse") f = 1.0 / (length * 2.0);
    std::vector<double> samples;
    double t = 0.0;
    for (std::size_t i = 0; i < wave.count; ++i, t += dt) {
        const double u = (t - length * 0.5) * 10.0 / (length * 0.5);
        double s = std::sin(wave.phase / 180.0 * 3.141592653589793 + t * 6.283185307179586 * f);
        if (wave.waveform == "square") s = s >= 0.0 ? 1.0 : -1.0;
        if (wave.type == "continuouswave" && wave.envelope == "hannwindow") {
            s = s * (1.0 - std::cos(t * 6.283185307179586 / length)) * 0.5;
        }
        samples.push_back(wave.waveform == "gaussian" ? std::pow(2.718281828459045, u * -0.05 * u) : s);
    }
    return samples;
}

TEST(ModelFacts, GeneratedTables) {
    const Wave table[] = {
        {0.5, "fullpulse", "sine", "hannwindow", 7, 10, 0, 20},
        {0.5, "fullpulse", "sine", "none", 7, 10.2, 30, 21},
        {0.1, "halfpulse", "sine", "none", 7, 10, 0, 101},
        {0.5, "fullpulse", "square", "none", 0, 10, 0, 20},
        {0.25, "continuouswave", "square", "hannwindow", 100, 40, -45, 160},
        {0.25, "continuouswave", "sine", "none", 123.4, 7, 90, 28},
        {0.25, "continuouswave", "gaussian", "hannwindow", 100, 8, 90, 32},
        {1e9, "fullpulse", "sine", "none", 0, 1e-9, 90, 1},
    };
    for (const bool doubles : {true, false}) {
        for (const Wave& wave : table) {
            const std::string actuator =
                "ACTUATOR shape point position 1 1 1 input definition method force amplitude 9 processing invert "
                "type " +
                wave.type + " waveform " + wave.waveform + " envelope " + wave.envelope +
                Line(" frequency", wave.frequency) + Line("duration", wave.duration) + Line("phase", wave.phase) +
                "END\n";
            const Outcome outcome =
                ReadText(Line("ANALYSIS cellsize 1 timestep", wave.timeStep) + "END\r\n" + Sections("MCS") + actuator +
                             actuator + "TABLE id 1 count 1 data 0.1 END END\r\n",
                         {false, doubles, 64});
            ASSERT_EQ(outcome.what, "") << actuator;
            const auto& tables = outcome.model->tables;
            EXPECT_EQ(tables.size(), 3U);
            EXPECT_EQ(tables.at(1)->Get(0), doubles ? 0.1 : 0.1F);
            std::string expected = Line("table", -2, -2);
            for (const double sample : Samples(wave))
                expected += Line("", doubles ? sample : static_cast<float>(sample));
            EXPECT_EQ(ShowTables({{-2, tables.at(-2)}}), expected) << actuator;
            EXPECT_EQ(tables.at(-2)->elementSize, doubles ? 8U : 4U);
            EXPECT_EQ(tables.at(-2)->doublePrecision, doubles);
        }
    }
    // What the formulas come to at places where that is plain to see.
    EXPECT_EQ(Samples(table[3]).front(), 1);
    EXPECT_EQ(Samples(table[3]).back(), -1);
    EXPECT_DOUBLE_EQ(Samples(table[6])[0], std::exp(-5.0));
    EXPECT_EQ(Samples(table[6])[16], 1);
    EXPECT_EQ(ReadText("ANALYSIS cellsize 1 timestep 0 END\r\n" + Sections("MCXS")).what,
              "Error in file \"m.model\", line 6, column 1:\nOut of memory.");
}

/// With steps of no length every start but 0 is out of reach.
TEST(ModelFacts, NoTimeStep) {
    const std::string text =
        "ANALYSIS cellsize 1 timestep 0 END\r\n" + Sections("MCS") + Replaced(Sections("P"), "PIEZO", "PIEZO start 0");
    EXPECT_EQ(ReadText(text).model->piezos.at(0)->start, 0);
    EXPECT_EQ(ReadText(Replaced(text, "start 0", "start 1")).code, 119);
}

}  // namespace
}  // namespace orvalo
