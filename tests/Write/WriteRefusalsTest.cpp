#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/RoundTrip.h"

namespace orvalo {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::string WhyNotWritten(const std::function<void(const std::string&)>& write) {
    const std::string path = support::ScratchDirectory() + "/refused";
    std::filesystem::remove(path);
    std::string why = "written";
    try {
        write(path);
    } catch (const WriteError& error) {
        EXPECT_EQ(error.code(), 0);
        EXPECT_FALSE(std::filesystem::exists(path));
        why = error.what();
    }
    return why;
}

/// A model of all sections, as read anew.
Model Whole() {
    static const std::string path = support::WriteFile("whole.model", support::Sections("AMCGXWTPSDE"));
    return ReadModel(path);
}

struct ModelCase {
    const char* refusal;
    std::function<void(Model&)> change;
    WriteOptions options = {};
};

WriteOptions Included(const char* name, std::string comment = {}) {
    WriteOptions options;
    options.cubesFile = name;
    options.comment = std::move(comment);
    return options;
}

Material Odd() {
    Material material("odd");
    material.SetFormat0(1, 2, 1);
    material.lambda = 7;
    return material;
}

const ModelCase modelCases[] = {
    {"The analysis: the cell size is 0, and must be above 0", [](Model& m) { m.cellSize = 0; }},
    {"The analysis: the start time is not a number", [](Model& m) { m.startTime = nan; }},
    {"The analysis: the time step is -1, and must be 0 or more", [](Model& m) { m.timeStep = -1; }},
    {"The analysis: the room temperature is -274, and must be -273.15 or more",
     [](Model& m) { m.roomTemperature = -274; }},
    {"Material no. 2: the name 'Steel' would be read back in lower case",
     [](Model& m) { m.materials.Add(Material("Steel"), 2); }},
    {"Material no. 2: the name 'a b' has characters other than letters, digits and _ . + - =",
     [](Model& m) { m.materials.Add(Material("a b"), 2); }},
    {"Material no. 1: another material has the same number", [](Model& m) { m.materials.Add(Material("s"), 1); }},
    {"The material of the vector index 2 has no number from 1 to 255",
     [](Model& m) { m.materials.Add(Material("s"), 0); }},
    {"Material no. 2: the wave speeds and elastic constants belong to no density with wave speeds, or with Young's "
     "modulus and Poisson's ratio",
     [](Model& m) { m.materials.Add(Odd(), 2); }},
    {"The model has no cubes", [](Model& m) { m.cubes.Free(); }},
    {"Cube no. 1: y is -2, and must be 0 or more",
     [](Model& m) { m.cubes.CubesPtr()[2] = 0xFE, m.cubes.CubesPtr()[3] = 0xFF; }},
    {"Cube no. 1 is of air, and is not one of the last ones, which may be left out",
     [](Model& m) { m.cubes.CubesPtr()[6] = 0; }},
    {"Damping cube no. 1: the model has no material of the vector index 9",
     [](Model& m) { m.cubes.DampingCubesPtr()[6] = 9; }},
    {"Damping cube no. 1: the coefficient is not a number",
     [](Model& m) { std::memcpy(m.cubes.DampingCubesPtr() + 7, &nan, sizeof nan); }},
    {"The model has neither an actuator nor a piezo patch, and must have one",
     [](Model& m) { m.actuators.clear(), m.piezos.clear(); }},
    {"Actuator no. 1: the start is 1, and must be a negated number of time steps",
     [](Model& m) { m.actuators[0].start = 1; }},
    {"Actuator no. 1: no number of microseconds is a start of 3 time steps",
     [](Model& m) { m.timeStep = 0, m.actuators[0].start = -3; }},
    {"Actuator no. 2: the method 3 has no word", [](Model& m) { m.actuators[1].method = 3; }},
    {"Actuator no. 2 is driven by a table, and has none", [](Model& m) { m.actuators[1].tableId = 0; }},
    {"Actuator no. 2: the model has no table 8", [](Model& m) { m.actuators[1].tableId = 8; }},
    {"Actuator no. 1: the type 0 has no word", [](Model& m) { m.actuators[0].definition.type = 0; }},
    {"Actuator no. 1: the duration is 0, and must be above 0",
     [](Model& m) { m.actuators[0].definition.duration = 0; }},
    {"Actuator no. 1: its signal has no number of samples", [](Model& m) { m.timeStep = 0; }},
    {"Actuator no. 2: the factor of w is not a number", [](Model& m) { m.actuators[1].factorW = nan; }},
    {"Table no. 1: sample 2 is not a number", [](Model& m) { static_cast<double*>(m.tables.at(1)->data)[1] = nan; }},
    {"Table no. 7: its own ID is another one, 1", [](Model& m) { m.tables[7] = m.tables.at(1); }},
    {"Table no. 7 has no samples", [](Model& m) { m.tables[7] = std::make_shared<Table>(); }},
    {"The piezo patch: the direction 0 1 1 is not that of an axis", [](Model& m) { m.piezos[0]->direction.y = 1; }},
    {"The piezo patch: the direction -32768 -32768 -32768 is not that of an axis",
     [](Model& m) { m.piezos[0]->direction.x = m.piezos[0]->direction.y = m.piezos[0]->direction.z = -32768; }},
    {"The model has 2 piezo patches, and may have one", [](Model& m) { m.piezos.push_back(m.piezos[0]); }},
    {"The piezo patch: it has no table 4, which its point 0 0 names",
     [](Model& m) { m.piezos[0]->data.Cells().begin()->second->tableU = 4; }},
    {"The model has neither a sensor nor a dump, and must have one",
     [](Model& m) { m.sensors.clear(), m.dumps.clear(); }},
    {"Sensor no. 1: the output 'ux' has no words", [](Model& m) { m.sensors.at(1).output = "ux"; }},
    {"Sensor no. 1: the file name 'a/b' has characters other than letters, digits and _ . + - =",
     [](Model& m) { m.sensors.at(1).file.fileName = "a/b"; }},
    {"Dump no. 1: no MAT-file can be appended to",
     [](Model& m) {
         m.dumps.at(1).file.fileFormat = FileFormatMat, m.dumps.at(1).file.writeMode = FileWriteModeAppend;
     }},
    {"Dump 0: an ID must be 1 or more", [](Model& m) { m.dumps[0] = m.dumps.at(1); }},
    {"Set no. 1: position 1, 1 -1 1, has a coordinate below 0", [](Model& m) { m.sets.at(1)->points->y = -1; }},
    {"The comment has a NUL, which would end the file", [](Model&) {}, Included("", std::string(1, '\0'))},
    {"The file for cubes: no file of the name 'c' can be included", [](Model&) {}, Included("c")},
    {"The file for cubes: the name '../cubes' has characters other than letters, digits and _ . + - =", [](Model&) {},
     Included("../cubes")},
    {"The file for cubes has the name of the model, 'refused'", [](Model&) {}, Included("refused")},
};

TEST(WriteRefusals, NameTheValueOfAModel) {
    for (const ModelCase& c : modelCases) {
        Model model = Whole();
        c.change(model);
        EXPECT_EQ(WhyNotWritten([&](const std::string& path) { WriteModel(model, path, c.options); }), c.refusal);
    }
    EXPECT_EQ(support::RoundTripProblem(Whole(), true), "");
}

/// Two rows of four index columns and two value columns, from numbers with others between them.
struct Rows {
    long long indices[2][5] = {{1, 2, 3, 4}, {-1, 0, 7, -32768}};
    double values[3][2] = {{0.5, -0.0}, {1e-300, nan}, {0, 0}};
    ResultsView view;

    Rows() {
        view.rows = 2;
        for (auto& column : indices[0]) view.indices.emplace_back(&column, sizeof indices[0]);
        view.indices.pop_back();
        for (auto& column : values[0]) view.values.emplace_back(&column, sizeof values[0]);
    }
};

struct ResultsCase {
    const char* text;
    const char* mat;
    std::function<void(Rows&)> change;
};

const char* const good = "written";

const ResultsCase resultsCases[] = {
    {good, good, [](Rows&) {}},
    {"Row 2: the index y is 32768, which 16 bits do not hold", "Row 2: the index y is 32768, which 16 bits do not hold",
     [](Rows& r) { r.indices[1][1] = 32768; }},
    {"Row 1: the index f is -32769, which 16 bits do not hold",
     "Row 1: the index f is -32769, which 16 bits do not hold", [](Rows& r) { r.indices[0][3] = -32769; }},
    {"The box around all coordinates has 8589934592 cells, which are too many",
     "The box around all coordinates has 8589934592 cells, which are too many",
     [](Rows& r) { r.indices[0][0] = 32767, r.indices[1][0] = -32768, r.indices[0][1] = 32767, r.indices[0][2] = 10; }},
    {good, "A MAT-file of results has the coordinates x, y and z, and these results have 0 index columns",
     [](Rows& r) { r.view.indices.clear(); }},
    {"A text of results without coordinates has up to 4096 rows, and these have 4097",
     "A MAT-file of results has the coordinates x, y and z, and these results have 0 index columns",
     [](Rows& r) { r.view.indices.clear(), r.view.rows = 4097; }},
    {"A text of results has the index columns x, y, z and f, or none, and these have 5", good,
     [](Rows& r) { r.view.indices.push_back(r.view.indices[0]); }},
    {"Results have one value column or more, and these have none",
     "A MAT-file of results has 1 to 9 value columns, and these results have 0",
     [](Rows& r) { r.view.values.clear(); }},
    {good, "A MAT-file of results has 1 to 9 value columns, and these results have 10",
     [](Rows& r) { r.view.values.resize(10, r.view.values[0]); }},
    {good, "The matrix 'val' of 268435456 rows and 2 columns takes 4294967344 bytes, which 32 bits do not count",
     [](Rows& r) { r.view.rows = r.view.rows == 2 ? 268435456 : 2; }},
    {"Index column 4 is named 'g', and is to be 'f'", good,
     [](Rows& r) {
         r.view.indexNames = {"x", "y", "z", "g"};
     }},
    {"The results have 1 names for 2 value columns", "The results have 1 names for 2 value columns",
     [](Rows& r) { r.view.valueNames = {"u"}; }},
    {"The name 'a\tb' has a tab, a line end or a NUL, which no name of a column has", good,
     [](Rows& r) {
         r.view.valueNames = {"a\tb", "c"};
     }},
    {"The first value columns are named x, y, z and f, which would be read as indices",
     "A MAT-file of results has the coordinates x, y and z, and these results have 0 index columns",
     [](Rows& r) {
         r.view.indices.clear(), r.view.values.resize(5, r.view.values[0]),
             r.view.valueNames = {"x", "y", "z", "f", "u"};
     }},
    {"The names of all columns take more than 65535 bytes", good,
     [](Rows& r) {
         r.view.valueNames = {std::string(65535 - 9, 'n'), ""};
     }},
    {"A row of 32768 values takes 65536 bytes or more, and a line has up to 65535",
     "A MAT-file of results has 1 to 9 value columns, and these results have 32768",
     [](Rows& r) {
         r.view.indices.clear(), r.view.values.resize(32768, r.view.values[0]), r.view.valueNames.resize(32768);
     }},
    {"The first name is that of a MAT-file, 'MATLAB 5.0 MAT-file'",
     "A MAT-file of results has the coordinates x, y and z, and these results have 0 index columns",
     [](Rows& r) {
         r.view.indices.clear(), r.view.valueNames = {"MATLAB 5.0 MAT-file", "u"};
     }},
    {"Row 2 takes 74995 bytes, and a line has up to 65535",
     "A MAT-file of results has 1 to 9 value columns, and these results have 3000",
     [](Rows& r) { r.view.values.resize(3000, r.view.values[0]), r.values[1][0] = -1.2345678901234567e-300; }},
};

TEST(WriteRefusals, NameTheValueOfResults) {
    const std::string path = support::ScratchDirectory() + "/view.results";
    for (const ResultsCase& c : resultsCases) {
        Rows rows;
        c.change(rows);
        const bool claimsRows = rows.view.rows > 4097;
        if (!claimsRows) {
            EXPECT_EQ(WhyNotWritten([&](const std::string& p) { WriteResultsTxt(rows.view, p); }), c.text);
        }
        EXPECT_EQ(WhyNotWritten([&](const std::string& p) { WriteResultsMat(rows.view, p); }), c.mat);
    }
}

TEST(WriteResults, TakesViewsOfAnyStrideAndType) {
    const Rows rows;
    const short x[] = {9, 0, 8};
    const int y[] = {-3};
    const float f[] = {0.1F, -2.0F};
    ResultsView view;
    view.rows = 2;
    view.indices = {{x + 2, -4}, {y, 0}, {&rows.indices[0][0], sizeof rows.indices[0]}};
    view.values = {{&f[0]}, {&rows.values[0][1], sizeof rows.values[0]}};
    view.valueNames = {"a b", ""};
    const std::string path = support::ScratchDirectory() + "/view";
    WriteResultsTxt(view, path, support::Overwriting());
    EXPECT_EQ(support::FileBytes(path),
              "x\ty\tz\tf\ta b\t\n"
              "8\t65533\t1\t0\t0.10000000149011612\t-0\n"
              "9\t65533\t65535\t0\t-2\tnan\n");
    const auto text = ReadResults(path);
    WriteResultsMat(view, path, support::Overwriting());
    EXPECT_TRUE(support::SameResults(*text, *ReadResults(path)));
    EXPECT_EQ(ReadResults(path)->IndicesColCount(), 3U);
}

/// Results of so many rows in both forms, and their numbers as mere bytes, column after column.
void WriteForOthers(const std::string& folder, std::size_t rows, std::size_t indexColumns) {
    std::mt19937_64 random(rows);
    std::vector<std::vector<short>> indices(indexColumns, std::vector<short>(rows));
    std::vector<std::vector<double>> values(3, std::vector<double>(rows));
    ResultsView view;
    view.rows = rows;
    const std::string name = folder + "/r" + std::to_string(rows) + "x" + std::to_string(indexColumns);
    std::ofstream bytes(name + ".numbers", std::ios::binary);
    for (auto& column : values) {
        for (double& value : column) value = std::ldexp(static_cast<double>(random()) - 0x1p63, -70);
        if (rows > 2) column[1] = -0.0, column[2] = std::numeric_limits<double>::infinity();
        view.values.emplace_back(column.data());
        bytes.write(reinterpret_cast<const char*>(column.data()), static_cast<std::streamsize>(rows * sizeof(double)));
    }
    for (auto& column : indices) {
        for (short& index : column) index = static_cast<short>(random() % 300);
        view.indices.emplace_back(column.data());
        bytes.write(reinterpret_cast<const char*>(column.data()), static_cast<std::streamsize>(rows * sizeof(short)));
    }
    WriteResultsMat(view, name + ".mat", support::Overwriting());
    WriteResultsTxt(view, name + ".txt", support::Overwriting());
    EXPECT_EQ(support::RoundTripProblem(*ReadResults(name + ".mat")), "");
}

// What other programs make of them is the matter of a script, which names the directory.
TEST(WriteResults, ForOtherPrograms) {
    const char* const named = std::getenv("ORVALO_FOREIGN");
    const std::string folder = named != nullptr ? named : support::ScratchDirectory();
    for (const std::size_t rows : {0U, 1U, 2U, 3U, 4U, 1001U}) {
        for (const std::size_t indexColumns : {3U, 4U}) WriteForOthers(folder, rows, indexColumns);
    }
}

}  // namespace
}  // namespace orvalo
