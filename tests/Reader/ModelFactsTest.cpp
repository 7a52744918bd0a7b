#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;
using testing::ElementsAre;
using testing::Pair;

using Numbers = std::vector<double>;

/// x, y, z, material and, of damping cubes, the coefficient of every packed record.
Numbers Records(const unsigned char* record, std::size_t count, std::size_t stride) {
    Numbers numbers;
    for (; count > 0; --count, record += stride) {
        short position[3];
        std::memcpy(position, record, sizeof position);
        numbers.insert(numbers.end(), position, position + 3);
        numbers.push_back(record[6]);
        double coefficient = 0.0;
        if (stride == 15) std::memcpy(&coefficient, record + 7, sizeof coefficient);
        if (stride == 15) numbers.push_back(coefficient);
    }
    return numbers;
}

Numbers CubeRecords(const Model& model) {
    return Records(model.cubes.CubesPtr(), model.cubes.CubesCount(), 7);
}

Numbers DampingRecords(const Model& model) {
    return Records(model.cubes.DampingCubesPtr(), model.cubes.DampingCubesCount(), 15);
}

Numbers Temperatures(const Model& model) {
    const double* first = model.cubes.TemperaturesPtr();
    return first == nullptr ? Numbers{} : Numbers(first, first + model.cubes.CubesCount());
}

Numbers BoundsOf(const Model& model) {
    const Bounds& b = model.bounds;
    return b.defined
               ? Numbers{double(b.minX), double(b.maxX), double(b.minY), double(b.maxY), double(b.minZ), double(b.maxZ)}
               : Numbers{};
}

Numbers Samples(const Table& table) {
    Numbers samples;
    for (std::size_t i = 0; i < table.count; ++i) samples.push_back(table.Get(i));
    return samples;
}

/// Cubes, temperatures, damping cubes and bounds.
std::string GridOf(const Model& model) {
    std::string text;
    for (const Numbers& numbers : {CubeRecords(model), Temperatures(model), DampingRecords(model), BoundsOf(model)}) {
        if (!text.empty()) text += "| ";
        for (const double number : numbers) {
            char shown[32];
            std::snprintf(shown, sizeof shown, "%g ", number);
            text += shown;
        }
    }
    return text;
}

struct GridRow {
    bool cubesOnly;
    const char* text;
    const char* grid;
};

TEST(ModelFacts, Grid) {
    const std::string materials = Sections("A") + "MATERIALS 7 0 \"a\" 1 1 1 255 0 \"b\" 1 1 1 2 0 \"c\" 1 1 1 END\n";
    const GridRow table[] = {
        // Vector indices in a whole model, numbers as written when only cubes are read.
        {false, "CUBES count 3 format 0 data 3 1 1 7\n1 5 2 2\n32767 0 300 255 END END",
         "3 1 1 1 1 5 2 3 32767 0 300 2 | | | 1 32767 0 5 1 300 "},
        {true, "CUBES count 3 format 0 data 3 1 1 7\n1 5 2 9\n32767 0 300 255 END END",
         "3 1 1 7 1 5 2 9 32767 0 300 255 | | | 1 32767 0 5 1 300 "},
        // Of a short list the rest is zero, and no part of the bounds.
        {true, "CUBES count 2.9 format 1 data 5 6 7 8 -2.5e1 END END", "5 6 7 8 0 0 0 0 | -25 0 | | 5 5 6 6 7 7 "},
        {true, "CUBES format = 1 count = 1 data END count 5 END", "0 0 0 0 | 0 | | "},
        {true, "CUBES count 1 format 0 data 1 1 1 1 END END DAMPING count 2 data 0 9 1 2 .5 1 1 1 3 -  5 END END",
         "1 1 1 1 | | 0 9 1 2 0.5 1 1 1 3 -5 | 0 1 1 9 1 1 "},
        {true, "DAMPING count 2 data 4 4 4 1 2 END END CUBES count 1 format 0 data 1 1 1 1 END END",
         "1 1 1 1 | | 4 4 4 1 2 0 0 0 0 0 | 1 4 1 4 1 4 "},
        // Later sections and blocks replace earlier ones; the bounds remember all.
        {true, "CUBES count 1 format 1 data 1 1 1 1 9 END END CUBES count 1 format 0 data 2 2 2 2 END END",
         "2 2 2 2 | | | 1 2 1 2 1 2 "},
        {true, "CUBES count 1 format 0 data 3 3 3 3 END format 1 count 2 data 2 2 2 2 8 END END",
         "2 2 2 2 0 0 0 0 | 8 0 | | 2 3 2 3 2 3 "},
        {false,
         "CUBES count 1 format 0 data 1 1 1 2 END END DAMPING count 1 data 1 1 1 2 1 END END DAMPING count 1 data "
         "2 2 2 255 3 END END",
         "1 1 1 3 | | 2 2 2 2 3 | 1 2 1 2 1 2 "},
        // Wherever the keywords stand, and whatever else is not read.
        {true, "SENSOR id 0 cubes count 1 format 0 data 1 1 1 1 END END", "1 1 1 1 | | | 1 1 1 1 1 1 "},
        // Numbers of 32 bits wrap.
        {true, "CUBES count 1 format 0 data 4294967297 2 3 4294967300 END END", "1 2 3 4 | | | 1 1 2 2 3 3 "},
    };
    for (const GridRow& row : table) {
        const Outcome outcome =
            ReadText((row.cubesOnly ? "" : materials) + row.text + "\r\n" + Sections("XS"), {row.cubesOnly, true, 64});
        EXPECT_EQ(outcome.what, "") << row.text;
        EXPECT_EQ(GridOf(*outcome.model), row.grid) << row.text;
        EXPECT_EQ(outcome.model->tables.size(), row.cubesOnly ? 0U : 1U);
    }
}

/// A whole model around `text`, which may stand for any of the sections named: its parts in order.
std::shared_ptr<Model> Whole(const std::string& text, std::string_view before = "AMC", std::string_view after = "XS",
                             bool doublePrecision = true) {
    const Outcome outcome = ReadText(Sections(before) + text + "\r\n" + Sections(after), {false, doublePrecision, 64});
    EXPECT_EQ(outcome.what, "") << text;
    return outcome.model;
}

TEST(ModelFacts, AnalysisSettings) {
    auto model = Whole("analysis CellSize = 0.001 cellsize 2 timestep 0.05 starttime 1500 ROOMTEMPERATURE -273.15 End",
                       "", "MCXS");
    EXPECT_EQ(model->cellSize, 2);
    EXPECT_EQ(model->timeStep, 0.05 * 1e-6);
    EXPECT_DOUBLE_EQ(model->startTime, 0.0015);
    EXPECT_EQ(model->roomTemperature, -273.15);
    model = Whole(Sections("S"), "AMCP", "");
    EXPECT_EQ(model->roomTemperature, 25);
    EXPECT_EQ(model->startTime, 0);
}

TEST(ModelFacts, Materials) {
    const auto model = Whole(
        "MATERIALS 7 0 \"My Steel\" 7800 5900 3200\n3.9 1 \"al\" 2700 7.0e10 0.33 255 2 \"t\" 1 2 3 4 5 6 7 8 9 1 0 "
        "\"\" -1 0 0 end",
        "A", "CXS");
    const MaterialRepository& materials = model->materials;
    ASSERT_EQ(materials.Count(), 5U);
    EXPECT_EQ(materials.File2Vec(7), 1);
    EXPECT_EQ(materials.File2Vec(3), 2);
    EXPECT_EQ(materials.File2Vec(255), 3);
    EXPECT_EQ(materials.Vec2File(4), 1);
    EXPECT_EQ(materials[1].name, "mysteel");
    EXPECT_EQ(materials[1].mu, 7800.0 * 3200 * 3200);
    EXPECT_EQ(materials[1].lambda, (5900.0 * 5900 - 2.0 * 3200 * 3200) * 7800);
    EXPECT_DOUBLE_EQ(materials[2].vp, std::sqrt(7e10 * 0.67 / (0.34 * 1.33 * 2700)));
    EXPECT_DOUBLE_EQ(materials[2].vs, std::sqrt(7e10 / 2.66 / 2700));
    EXPECT_TRUE(materials.TemperatureDependent(3));
    EXPECT_THAT(materials[3].densityCoefficients, ElementsAre(1, 2, 3));
    EXPECT_THAT(materials[3].youngCoefficients, ElementsAre(4, 5, 6));
    EXPECT_THAT(materials[3].poissonCoefficients, ElementsAre(7, 8, 9));
    EXPECT_EQ(materials[4].density, -1);
}

TEST(ModelFacts, Actuators) {
    const auto model = Whole(
        "ANALYSIS cellsize 1 timestep 0.05 END\r\n" + Sections("MC") +
            "ACTUATOR enabled 1 shape = point position -5 6 7.9 input wave table 2 method absolute start 0.12 "
            "direction U W amplitude -3 factoru 2 factorv 3 factorw 4 processing invert END\n"
            "ACTUATOR enabled 0 shape cube data END\n"
            "ACTUATOR input definition shape point position 1 2 3 method force type continuouswave waveform gaussian "
            "envelope hannwindow frequency 0 duration 1 phase -90 direction all direction v start 0 END\n"
            "ACTUATOR direction = shape point position 1 1 1 input wave table 3 method force END\n"
            "TABLE id 2 count 2 data 1 2 END END TABLE id 3 count 1 data 3 END END TABLE id 9 count 1 data 3 END END",
        "", "S");
    ASSERT_EQ(model->actuators.size(), 3U);
    const Actuator& first = model->actuators[0];
    EXPECT_EQ(first.shared.id, -1);
    EXPECT_THAT(
        (Numbers{double(first.shared.position.x), double(first.shared.position.y), double(first.shared.position.z)}),
        ElementsAre(-5, 6, 7));
    EXPECT_THAT((Numbers{double(first.start), double(first.input), double(first.method), double(first.invert),
                         first.amplitude, first.factorU, first.factorV, first.factorW}),
                ElementsAre(-3, 1, 2, 1, -3, 2, 3, 4));
    EXPECT_TRUE(first.directionU && !first.directionV && first.directionW);
    EXPECT_EQ(first.table, model->tables.at(2).get());
    const Actuator& second = model->actuators[1];
    const Actuator::Definition& d = second.definition;
    EXPECT_THAT((Numbers{double(d.type), double(d.waveform), double(d.envelope), d.frequency, d.duration, d.phase}),
                ElementsAre(3, 3, 1, 0, 1, -90));
    EXPECT_THAT((Numbers{double(second.start), double(second.invert), second.amplitude, second.factorW}),
                ElementsAre(0, 0, 1, 1));
    EXPECT_TRUE(!second.directionU && second.directionV && !second.directionW);
    EXPECT_EQ(second.tableId, -1);
    EXPECT_EQ(second.table, model->tables.at(-1).get());
    EXPECT_FALSE(model->actuators[2].directionU || model->actuators[2].directionV || model->actuators[2].directionW);
    EXPECT_THAT(model->requiredTables, ElementsAre(Pair(2, 1), Pair(3, 1), Pair(9, 1)));
}

TEST(ModelFacts, StartSteps) {
    const struct {
        const char* timeStep;
        const char* start;
        int steps;
    } table[] = {
        {"0.05", "0", 0}, {"0.05", "0.12", -3}, {"1", "2147483647", -2147483647}, {"1", "2147483648", 1}, {"0", "0", 0},
        {"0", "1", 1},    {"1e300", "1", -1},
    };
    for (const auto& [timeStep, start, steps] : table) {
        const Outcome outcome = ReadText(
            "ANALYSIS cellsize 1 timestep " + std::string(timeStep) + " END\r\n" + Sections("MC") + "PIEZO start " +
            start + " id 1 position 0 0 0 direction 1 0 0 method force count 1 data 0 0 i END END " + Sections("S"));
        EXPECT_EQ(outcome.code, steps == 1 ? 119 : 0) << start << " by " << timeStep;
        EXPECT_EQ(outcome.model->piezos.empty() ? 1 : outcome.model->piezos[0]->start, steps)
            << start << " by " << timeStep;
    }
}

TEST(ModelFacts, Piezos) {
    const auto model = Whole(
        "PIEZO enabled 0 data x END table y END 5 END\n"
        "PIEZO id 3 position 1 2 -3 direction 0 1 0 method absolute amplitude 2.5 table id 70001 count 2 data 1 2 END "
        "END count = 4 data 5 0 T 70001 5 5 -1 0 i 0 1 i -32768 32767.9 t 5 5 5 END table id 5 count 2 data 3 4 END "
        "END END",
        "AMC", "S");
    ASSERT_EQ(model->piezos.size(), 1U);
    const Piezo& piezo = *model->piezos[0];
    EXPECT_EQ(piezo.shared.id, 3);
    EXPECT_EQ(piezo.shared.position.z, -3);
    EXPECT_EQ(piezo.direction.y, 1);
    EXPECT_EQ(piezo.method, 2);
    EXPECT_EQ(piezo.amplitude, 2.5);
    EXPECT_EQ(piezo.samplesCount, 2U);
    EXPECT_EQ(piezo.data.Count(), 4U);
    // By y, then by x, both as unsigned patterns; table IDs keep their low 16 bits.
    std::vector<Numbers> cells;
    for (const auto& [key, cell] : piezo.data.Cells()) {
        cells.push_back({double(key), double(cell->x), double(cell->y), double(cell->tableU), double(cell->tableW)});
    }
    EXPECT_THAT(cells, ElementsAre(Numbers{5, 5, 0, 70001 - 65536, 5}, Numbers{65535, -1, 0, 0, 0},
                                   Numbers{65536, 0, 1, 0, 0}, Numbers{2147450880, -32768, 32767, 5, 5}));
    EXPECT_THAT(piezo.usedTables, ElementsAre(Pair(5, 1), Pair(70001, 1)));
    EXPECT_EQ(Samples(*piezo.tables.at(5)), (Numbers{3, 4}));
    EXPECT_TRUE(model->tables.empty());
}

TEST(ModelFacts, Outputs) {
    const auto model = Whole(
        "SENSOR enabled 0 id 1 shape cube END\n"
        "SENSOR id 4294967298 shape point position 1 2 3 output = U U m filename \"A b.TXT\" writemode create notation "
        "decimal fileformat txt END\n"
        "SENSOR id 1 output shape point position 1 2 3 filename = 1.5E3 writemode append END\n"
        "DUMP id 9 output All U0 filename F fileformat mat writemode overwrite END\n"
        "DUMP id 8 output U0 All filename = w2 END",
        "AMC", "P");
    ASSERT_EQ(model->sensors.size(), 2U);
    const auto facts = [](const std::string& output, const FileProperties& f) {
        return output + ' ' + f.fileName + ' ' + std::to_string(f.writeMode) + std::to_string(f.notation) +
               std::to_string(f.fileFormat);
    };
    EXPECT_EQ(facts(model->sensors.at(2).output, model->sensors.at(2).file), "uum ab.txt 100");
    EXPECT_EQ(facts(model->sensors.at(1).output, model->sensors.at(1).file), " 1.5e3 210");
    EXPECT_EQ(facts(model->dumps.at(9).output, model->dumps.at(9).file), "u0v0w0u1v1w1u2v2w2u0 f 011");
    EXPECT_EQ(facts(model->dumps.at(8).output, model->dumps.at(8).file), "u0v0w0u1v1w1u2v2w2 w2 010");
    EXPECT_EQ(model->sensors.at(2).shared.position.y, 2);
}

TEST(ModelFacts, TablesAndSets) {
    for (const bool doubles : {true, false}) {
        const auto model = Whole(
            "TABLE count 3 id = 2.7 data 0.1 -1e-3 - 5 END END\nTABLE id 1 count 2 data 1 2 END count 1 data 9 END "
            "END\n"
            "SET count = 2 id 3.9 data 10 20 30\n40 50 32767 END END\nSET id 1 count 3 data 7 8 9 END END",
            "AMC", "XS", doubles);
        const Table& table = *model->tables.at(2);
        EXPECT_EQ(table.elementSize, doubles ? 8U : 4U);
        EXPECT_EQ(table.doublePrecision, doubles);
        EXPECT_EQ(Samples(table), (doubles ? Numbers{0.1, -1e-3, -5} : Numbers{0.1F, -1e-3F, -5}));
        EXPECT_EQ(Samples(*model->tables.at(1)), (Numbers{9}));
        const auto points = [](const Set& set) {
            Numbers numbers;
            for (unsigned int i = 0; i < set.count; ++i) {
                for (const short c : {set.points[i].x, set.points[i].y, set.points[i].z}) numbers.push_back(c);
            }
            return numbers;
        };
        EXPECT_EQ(points(*model->sets.at(3)), (Numbers{10, 20, 30, 40, 50, 32767}));
        EXPECT_EQ(points(*model->sets.at(1)), (Numbers{7, 8, 9, 0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(model->tables.at(-1)->elementSize, doubles ? 8U : 4U);
    }
}

struct WaveRow {
    const char* timeStep;
    const char* type;
    const char* waveform;
    const char* envelope;
    const char* frequency;
    const char* duration;
    const char* phase;
    std::size_t count;
};

/// The samples of a waveform, in seconds and hertz.
Numbers Waveform(const WaveRow& row) {
    const std::string type = row.type;
    const std::string waveform = row.waveform;
    const double dt = std::stod(row.timeStep) * 1e-6;
    const double length = std::stod(row.duration) / 1e6;
    const double f = type == "fullpulse"   ? 1.0 / length
                     : type == "halfpulse" ? 1.0 / (length * 2.0)
                                           : std::stod(row.frequency) * 1000.0;
    Numbers samples;
    double t = 0.0;
    for (std::size_t i = 0; i < row.count; ++i, t += dt) {
        const double u = (t - length * 0.5) * 10.0 / (length * 0.5);
        double s = std::sin(std::stod(row.phase) / 180.0 * 3.141592653589793 + t * 6.283185307179586 * f);
        if (waveform == "square") s = s >= 0.0 ? 1.0 : -1.0;
        if (type == "continuouswave" && row.envelope == std::string("hannwindow")) {
            s = s * (1.0 - std::cos(t * 6.283185307179586 / length)) * 0.5;
        }
        samples.push_back(waveform == "gaussian" ? std::pow(2.718281828459045, u * -0.05 * u) : s);
    }
    return samples;
}

TEST(ModelFacts, GeneratedTables) {
    const WaveRow table[] = {
        {"0.5", "fullpulse", "sine", "hannwindow", "7", "10", "0", 20},
        {"0.5", "fullpulse", "sine", "none", "7", "10.2", "30", 21},
        {"0.1", "halfpulse", "sine", "none", "7", "10", "0", 101},
        {"0.5", "fullpulse", "square", "none", "0", "10", "0", 20},
        {"0.25", "continuouswave", "sine", "hannwindow", "100", "40", "0", 160},
        {"0.25", "continuouswave", "square", "hannwindow", "100", "40", "-45", 160},
        {"0.25", "continuouswave", "sine", "none", "123.4", "7", "90", 28},
        {"0.25", "continuouswave", "gaussian", "hannwindow", "100", "8", "90", 32},
        {"1e9", "fullpulse", "sine", "none", "0", "1e-9", "90", 1},
    };
    for (const bool doubles : {true, false}) {
        for (const WaveRow& row : table) {
            SCOPED_TRACE(std::string(row.type) + ' ' + row.waveform + ' ' + row.envelope);
            const std::string actuator = std::string(
                                             "ACTUATOR shape point position 1 1 1 input definition method "
                                             "force type ") +
                                         row.type + " waveform " + row.waveform + " envelope " + row.envelope +
                                         " frequency " + row.frequency + " duration " + row.duration + " phase " +
                                         row.phase + " amplitude 9 processing invert END\n";
            const auto model = Whole("ANALYSIS cellsize 1 timestep " + std::string(row.timeStep) + " END\r\n" +
                                         Sections("MC") + actuator + actuator,
                                     "", "S", doubles);
            ASSERT_EQ(model->tables.size(), 2U);
            EXPECT_EQ(model->actuators[1].tableId, -2);
            EXPECT_EQ(model->actuators[1].table->id, -2);
            Numbers expected = Waveform(row);
            if (!doubles) {
                for (double& sample : expected) sample = static_cast<float>(sample);
            }
            EXPECT_EQ(Samples(*model->tables.at(-2)), expected);
        }
    }
    // What the formulas come to at places where that is plain to see.
    const Numbers square = Waveform(table[3]);
    EXPECT_EQ(square.front(), 1);
    EXPECT_EQ(square.back(), -1);
    EXPECT_EQ(Waveform(table[4]).front(), 0);
    EXPECT_DOUBLE_EQ(Waveform(table[7])[0], std::exp(-5.0));
    EXPECT_EQ(Waveform(table[7])[16], 1);
    EXPECT_EQ(ReadText("ANALYSIS cellsize 1 timestep 0 END\r\n" + Sections("MCXS")).what,
              "Error in file \"m.model\", line 6, column 1:\nOut of memory.");
}

/// Whatever is cut off a model with every kind of section, reading it ends with success or with an error in the file.
TEST(ModelFacts, SurviveEveryTruncation) {
    const std::string text =
        Sections("AMC") +
        "DAMPING count=2 data 1 1 1 1 .5\n2 2 2 1 -1E2 END END\nACTUATOR enabled 1 shape point position 1 "
        "2 3 input wave start 5 table 1 method force direction U V processing none END $ comment\n" +
        Sections("XPS") + "PIEZO enabled 0 data x END table y END END\ninclude \"cut.inc\"\n" +
        "DUMP id 1 output all filename \"d\" fileformat mat END\nTABLE id 1 count 2 data 1 2e0 END END\n"
        "SET id 1 count 2 data 1 2 3 4 5 6 END END";
    const std::string included = "SENSOR id 2 shape point position 1 1 1 output u filename a writemode create END";
    const auto check = [](const Outcome& outcome) {
        if (outcome.code == 0) return;
        EXPECT_TRUE(outcome.code >= 102 && outcome.code <= 183) << outcome.what;
        ASSERT_NE(outcome.place.path, "") << outcome.what;
        EXPECT_LE(outcome.place.offset, std::filesystem::file_size(outcome.place.path)) << outcome.what;
    };
    WriteFile("cut.inc", included);
    ASSERT_EQ(ReadText(text).what, "");
    for (std::size_t size = 0; size < text.size(); ++size) {
        check(ReadText(text.substr(0, size)));
        check(ReadText(text.substr(0, size), {true, true, 5}));
    }
    for (std::size_t size = 0; size < included.size(); ++size) {
        WriteFile("cut.inc", included.substr(0, size));
        check(ReadText(text, {false, false, 5}));
    }
}

}  // namespace
}  // namespace orvalo
