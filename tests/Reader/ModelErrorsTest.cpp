#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

struct ErrorRow {
    int code;
    const char* message;  // with {dir} for the directory of the files
    const char* sections;
    const char* text;
    std::uint64_t row = 0;
    const char* file = nullptr;  // the source file that clients see
};

constexpr const char* cubes = "CUBES count 2 format 0 ^data ";
constexpr const char* coordinateX = "Invalid X coordinate value (or out of range).";
constexpr const char* coordinateY = "Invalid Y coordinate value (or out of range).";
constexpr const char* coordinateZ = "Invalid Z coordinate value (or out of range).";
constexpr const char* closing = "END keyword (section closing) expected.";
constexpr const char* obligatory = "One or more obligatory properties were not defined.";
constexpr const char* unknown = "Unknown keyword.";
constexpr const char* number = "Numerical property value expected.";
constexpr const char* property = "Invalid proverty value provided.";
constexpr const char* count = "Invalid 'Count' property value";
constexpr const char* format = "Invalid 'Format' property value, 0 or 1 is allowed.";
constexpr const char* id = "Invalid 'ID' property value, use natural number.";
constexpr const char* enabled = "Invalid 'Enabled' property value, 0 or 1 is accepted.";
constexpr const char* material = "Natural number of [1..255] range expected as material index.";
constexpr const char* materialFormat = "Natural number of [0..3] range expected as material definition format.";
constexpr const char* index = "Incorrect material index provided.";
constexpr const char* tooMany = "Too many cubes provided.";
constexpr const char* components = "'U', 'V', 'W' or 'All' expected.";
constexpr const char* noCellsize = "Obligatory property 'Cellsize' not defined.";
constexpr const char* noTimestep = "Obligatory property 'Timestep' not defined.";
constexpr const char* noCount = "Obligatory property 'Count' not defined.";
constexpr const char* noFormat = "Obligatory property 'Format' not defined.";
constexpr const char* noData = "Obligatory property 'Data' not defined.";
constexpr const char* noID = "Obligatory property 'ID' not defined.";

// Behind whole lines of sections a token is reported where it stands, provided that just one blank precedes it. In bulk
// rows the report stays at the token before them; a token behind them is one column late, the scan for a number having
// tried its first byte. For the marks see MarkedText.
const ErrorRow table[] = {
    // Lexer and includes.
    {105, "Invalid character.", "A", "@# ", 0, "Lexer"},
    {106, "Invalid character (inside keyword).", "A", "@ab#c"},
    {107, "Invalid character (inside number).", "", "ANALYSIS cellsize @12abc"},
    {108, "Unexpected End-Of-File.", "A", "@\"abc"},
    {109, "Unexpected End-Of-Line.", "A", "@\"abc\r\n\""},
    {110, "Include filename missing", "A", "include @5"},
    {111, "Recursive include found.", "A", "include @\"m.model\""},
    {111, "Recursive include found.", "A", "include \"empty.model\" include @\"EMPTY.model\""},
    {103, "Unable to open '{dir}/none.model' input file.", "A", "include @\"None.model\""},
    // Order of sections.
    {132, "Section name expected.", "A", "@5", 0, "ReaderMisc"},
    {132, "Section name expected.", "A", "@END"},
    {132, "Section name expected.", "A", "@\"materials\""},
    {134, "ANALYSIS section must be defined first.", "", "@MATERIALS END", 0, "Reader"},
    {134, "ANALYSIS section must be defined first.", "", "@DUMP END"},
    {135, "ANALYSIS section already defined.", "A", "@ANALYSIS END"},
    {136, "ANALYSIS section not defined.", "", "%nothing\r\n@"},
    {137, "MATERIALS section expected here.", "A", "@CUBES END"},
    {137, "MATERIALS section expected here.", "A", "@DAMPING END"},
    {138, "MATERIALS section already defined.", "AM", "@MATERIALS END"},
    {139, "MATERIALS section not defined.", "A", "@"},
    {140, "CUBES section expected here.", "AM", "@SET END"},
    {141, "CUBES section already defined.", "AMC", "@CUBES END"},
    {142, "CUBES section not defined.", "AM", "@"},
    {143, "At least one ACTUATOR or one PIEZO must be defined.", "AMCS", "@"},
    {144, "At least one SENSOR or one DUMP must be defined.", "AMCX", "@"},
    {144, "At least one SENSOR or one DUMP must be defined.", "AMCP", "@"},
    // ANALYSIS.
    {178, unknown, "", "ANALYSIS @cells 1", 0, "ReaderMisc"},
    {178, unknown, "", "ANALYSIS @5"},
    {178, unknown, "", "ANALYSIS cellsize 1\r\n@"},
    {118, number, "", "ANALYSIS cellsize @END"},
    {118, number, "", "ANALYSIS cellsize =^ @= 1"},
    {119, property, "", "ANALYSIS cellsize @0 END"},
    {119, property, "", "ANALYSIS timestep @-1 END"},
    {119, property, "", "ANALYSIS starttime @-1e-9 END"},
    {119, property, "", "ANALYSIS roomtemperature @-273.16 END"},
    {117, noCellsize, "", "ANALYSIS @END"},
    {117, noTimestep, "", "ANALYSIS cellsize 1 @END"},
    // MATERIALS.
    {145, material, "A", "MATERIALS @0 0 \"a\" 1 1 1 END", 0, "SectionReader"},
    {145, material, "A", "MATERIALS @256 0 \"a\" 1 1 1 END"},
    {145, material, "A", "MATERIALS @4294967297 0 \"a\" 1 1 1 END"},
    {145, material, "A", "MATERIALS @ending"},
    {146, "Specified material index reused.", "A", "MATERIALS 3.9 0 \"a\" 1 1 1 @3 9"},
    {147, materialFormat, "A", "MATERIALS 1 @-1"},
    {147, materialFormat, "A", "MATERIALS 1 @4"},
    {147, materialFormat, "A", "MATERIALS 1 @4294967296"},
    {148, "Material name expected.", "A", "MATERIALS 1 0 @steel 1 1 1"},
    {149, "Selected material definition format is not handled by this version of library.", "A",
     "MATERIALS 1 3 @\"a\" x"},
    {118, number, "A", "MATERIALS 1 1 \"a\" 1 2 @END"},
    {118, number, "A", "MATERIALS 1 2 \"a\" 1 2 3 4 5 6 7 8 @\"9\""},
    // CUBES.
    {102, "Out of memory.", "AM", "CUBES count 9e18 format 0 @data 1 1 1 1 END END", 0, "Cubes"},
    {116, count, "AM", "CUBES count @0"},
    {116, count, "AM", "CUBES count @-2"},
    {116, count, "AM", "CUBES count @1e19"},
    {116, count, "AM", "CUBES count @\"1\""},
    {152, format, "AM", "CUBES format @2"},
    {152, format, "AM", "CUBES format @-1"},
    {152, format, "AM", "CUBES format @4294967296"},
    {152, format, "AM", "CUBES format @x"},
    {154, "Init values are not handled by current version of the library.", "AM", "CUBES @init 5"},
    {178, unknown, "AM", "CUBES @id 5"},
    {117, noCount, "AM", "CUBES format 0 @data"},
    {117, noFormat, "AM", "CUBES count 1 @data"},
    {117, noCount, "AM", "CUBES @END"},
    {117, noFormat, "AM", "CUBES count 1 @END"},
    {117, noData, "AM", "CUBES count 1 format 0 @END"},
    {120, coordinateX, "AM", "{cubes}@32768 1 1 1", 1},
    {121, coordinateY, "AM", "{cubes}1 1 1 1\n1 @32768 1 1", 2},
    {121, coordinateY, "AM", "{cubes}1 @-1 1 1", 1},
    {122, coordinateZ, "AM", "{cubes}1 1 @65536 1", 1},
    {122, coordinateZ, "AM", "{cubes}1 1 1 1\n\n1 1 @END", 2},
    {150, index, "AM", "{cubes}1 1 1 @0", 1},
    {150, index, "AM", "{cubes}1 1 1 @256", 1},
    {150, index, "AM", "{cubes}1 1 1@", 1},
    {151, "Material no.7 is not defined.", "AM", "{cubes}1 1 1 1\n1 1 1 @7\n", 2},
    {155, "Not enough cubes defined (1 missing)", "AM", "CUBES count 2 format 0 data 1 1 1 1 ~-1 1 1 1 END END", 2},
    {155, "Not enough cubes defined (1 missing)", "AM", "CUBES count 2 format 0 data 1 1 1 1~", 2},
    {156, tooMany, "AM", "{cubes}1 1 1 1\n1 1 1 1\n@1 x", 3},
    {156, tooMany, "AM", "{cubes}1 1 1 1\n1 1 1 1 @1.5 END", 3},
    {156, tooMany, "AM", "{cubes}1 1 1 1\n1 1 1 1\n@40000", 3},
    {133, closing, "AM", "CUBES count 1 format 0 data 1 1 1 1 ~x", 2},
    {133, closing, "AM", "CUBES count 1 format 0 data 1 1 1 1 ~.5", 2},
    {180, "Numerical temperature value expected.", "AM", "CUBES count 1 format 1 data 1 1 1 1^ @hot", 1},
    {107, "Invalid character (inside number).", "AM", "CUBES count 1 format 1 data 1 1 1 1^ @20x", 1},
    // DAMPING.
    {116, count, "AMC", "DAMPING count @0"},
    {117, noCount, "AMC", "DAMPING @data"},
    {117, noCount, "AMC", "DAMPING @END"},
    {117, noData, "AMC", "DAMPING count 1 @END"},
    {178, unknown, "AMC", "DAMPING count 1 @format"},
    {102, "Out of memory.", "AMC", "DAMPING count 9e18 @data"},
    {122, coordinateZ, "AMC", "DAMPING count 1 ^data 1 1 @32768 1 0.5 END", 1},
    {151, "Material no.2 is not defined.", "AMC", "DAMPING count 1 ^data 1 1 1 @2 0.5 END", 1},
    {183, "Numerical damping coefficient value expected.", "AMC", "DAMPING count 1 data 1 1 1 1^ @END", 1},
    {155, "Not enough cubes defined (2 missing)", "AMC", "DAMPING count 2 data ~x", 1},
    {156, tooMany, "AMC", "DAMPING count 1 data 1 1 1 1^ 0.5 @1", 2},
    // ACTUATOR.
    {123, "Currently only the 'point' is supported.", "AMC", "ACTUATOR shape @cube", 0, "ActuatorReader"},
    {120, coordinateX, "AMC", "ACTUATOR position @32768 1 1"},
    {166, "'Definition' or 'Wave' expected.", "AMC", "ACTUATOR input @1"},
    {119, property, "AMC", "ACTUATOR start @-1"},
    {119, property, "AMC", "ACTUATOR start @1e9"},
    {160, "Table ID already specified in current section.", "AMC", "ACTUATOR table 3 table @x"},
    {113, id, "AMC", "ACTUATOR table @0", 0, "ReaderCore"},
    {168, "'FullPulse', 'HalfPulse' or 'ContinuousWave' expected.", "AMC", "ACTUATOR type =^ @pulse"},
    {167, "'Force' or 'Absolute' expected.", "AMC", "ACTUATOR method @END"},
    {124, components, "AMC", "ACTUATOR direction @1", 0, "ActuatorReader"},
    {124, components, "AMC", "ACTUATOR direction U W @\"v\""},
    {178, unknown, "AMC", "ACTUATOR direction U @x"},
    {169, "'Square', 'Sine' or 'Gaussian' expected.", "AMC", "ACTUATOR waveform @cosine"},
    {170, "'None' or 'HannWindow' expected.", "AMC", "ACTUATOR envelope @hann"},
    {119, property, "AMC", "ACTUATOR frequency @-1"},
    {119, property, "AMC", "ACTUATOR duration @0"},
    {118, number, "AMC", "ACTUATOR phase @x"},
    {118, number, "AMC", "ACTUATOR factoru 1 factorv 2 factorw @x"},
    {171, "'None' or 'Invert' expected.", "AMC", "ACTUATOR processing @0"},
    {114, enabled, "AMC", "ACTUATOR enabled @2"},
    {133, closing, "AMC", "ACTUATOR enabled 0 input 5 x\r\n@"},
    {159, obligatory, "AMC", "ACTUATOR shape point position 1 1 1 input wave method force @END"},
    {159, obligatory, "AMC",
     "ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope none "
     "frequency 1 duration 1 @END"},
    // PIEZO.
    {178, unknown, "AMC", "PIEZO @shape"},
    {113, id, "AMC", "PIEZO id @-3"},
    {114, enabled, "AMC", "PIEZO enabled @-1"},
    {121, coordinateY, "AMC", "PIEZO position 1 @x 1"},
    {128, "Piezo direction not supported.", "AMC", "PIEZO direction 1 1 @0", 0, "PiezoReader"},
    {128, "Piezo direction not supported.", "AMC", "PIEZO direction 0 0 @-1"},
    {119, property, "AMC", "PIEZO start @-1"},
    {167, "'Force' or 'Absolute' expected.", "AMC", "PIEZO method @both"},
    {116, count, "AMC", "PIEZO count @0.5"},
    {115, "'Count' property not defined.", "AMC", "PIEZO @data count 1"},
    {120, coordinateX, "AMC", "PIEZO count 1 data @32768 1 i"},
    {120, coordinateX, "AMC", "PIEZO count 1 data @4294967297 1 i"},
    {121, coordinateY, "AMC", "PIEZO count 1 data 1 @t"},
    {129, "'t' or 'i' expected.", "AMC", "PIEZO count 1 data 1 1 @x"},
    {112, "Invalid table ID.", "AMC", "PIEZO count 1 data 1 1 t 1 1 @0.5"},
    {127, "Piezo point position duplicated (-3,4).", "AMC", "PIEZO count 2 data -3 4 i -3 4 @i", 0, "PiezoData"},
    {130, "Not enough piezo points defined (1 missing)", "AMC", "PIEZO count 2 data -32768 1 T 1 1 1.7 @END"},
    {131, "Too many piezo points provided.", "AMC", "PIEZO count 1 data 1 1 i 1 2 t 1 1 @1 END"},
    {161, "Table ID = 3 reused.", "AMC", "PIEZO table id 3 count 1 data 1 END END table id 3 count 1 data 1 END @END",
     0, "SectionReader"},
    {179, "All piezo tables must contain the same samples count.", "AMC",
     "PIEZO table id 3 count 1 data 1 END END table id 4 count 2 data 1 1 END @END"},
    {159, obligatory, "AMC", "PIEZO id 1 position 0 0 0 method force count 1 data 0 0 i END @END"},
    {133, closing, "AMC", "PIEZO enabled 0 data END table END x\r\n@"},
    {162, "Piezo ID = 2 reused.", "AMCP",
     "PIEZO id 2 position 0 0 0 direction 1 0 0 method force count 1 data 0 0 i END @END", 0, "Reader"},
    {176, "Piezo #1 requires table #5, but it is not defined.", "AMCS",
     "TABLE id 5 count 1 data 1 END END\r\nPIEZO id 1 position 0 0 0 direction 0 0 1 method force count 1 data 0 0 t 7 "
     "5 6 END END\r\n@"},
    // SENSOR and DUMP.
    {113, id, "AMC", "SENSOR id @0 enabled 0 END"},
    {114, enabled, "AMC", "DUMP enabled @\"1\""},
    {123, "Currently only the 'point' is supported.", "AMC", "SENSOR shape =^ @cube"},
    {122, coordinateZ, "AMC", "SENSOR position 1 1 @END"},
    {125, "'U', 'V', 'W' or 'M' expected.", "AMC", "SENSOR output @1", 0, "OutputReader"},
    {126, "'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected.", "AMC", "DUMP output u0 @\"v0\""},
    {178, unknown, "AMC", "SENSOR output @X"},
    {178, unknown, "AMC", "DUMP output u0 @u3"},
    {178, unknown, "AMC", "DUMP @shape point"},
    {172, "'Create', 'Append' or 'Overwrite' expected.", "AMC", "SENSOR writemode @replace"},
    {173, "'Decimal' or 'Scientific' expected.", "AMC", "DUMP notation @0"},
    {174, "'txt' or 'mat' expected.", "AMC", "DUMP fileformat @\"txt\""},
    {159, obligatory, "AMC", "SENSOR id 1 position 1 1 1 output u filename a @END"},
    {159, obligatory, "AMC", "DUMP id 1 output u0 @END"},
    {165, "Append mode not allowed while creating MAT file.", "AMC",
     "DUMP id 1 output all filename a fileformat mat writemode append @END"},
    {133, closing, "AMC", "DUMP enabled 0 id 0 output 5\r\n@"},
    {163, "Sensor ID = 1 reused.", "AMCS", "SENSOR id 1 shape point position 1 1 1 output u filename s @END"},
    {164, "Dump ID = 9 reused.", "AMC", "DUMP id 9 output all filename s END DUMP id 9 output all filename s @END"},
    // TABLE and SET.
    {113, id, "AMC", "TABLE id @0", 0, "TableReader"},
    {113, id, "AMC", "TABLE id @2147483648"},
    {116, count, "AMC", "TABLE count @2147483648"},
    {116, count, "AMC", "TABLE count @0.9"},
    {117, noID, "AMC", "TABLE count 2 @data"},
    {117, noCount, "AMC", "TABLE id 2 @data"},
    {118, number, "AMC", "TABLE id 1 count 2 data 1 @x"},
    {157, "Not enough table elements defined (1 missing)", "AMC", "TABLE id 1 count 3 data 1 2 @END END"},
    {157, "Not enough table elements defined (2 missing)", "AMC", "TABLE id 1 count 3 data 1 2 3 END count 5 @END"},
    {158, "Too many table elements provided.", "AMC", "TABLE id 1 count 2 data 1 2 @3"},
    {159, obligatory, "AMC", "TABLE id 1 @END"},
    {159, obligatory, "AMC", "TABLE id 1 count 1 @END"},
    {161, "Table ID = 5 reused.", "AMC", "TABLE id 5 count 1 data 1 END END TABLE id 5 count 1 data 1 END @END"},
    {177, "Table #3 is needed, but it is not defined.", "AMCS",
     "ACTUATOR shape point position 1 1 1 input wave method force table 5 END\r\n"
     "ACTUATOR shape point position 1 1 1 input wave method force table 3 END\r\n@"},
    {113, id, "AMC", "SET id @= 3"},
    {113, id, "AMC", "SET id @4294967296"},
    {116, count, "AMC", "SET count @4294967296"},
    {117, noCount, "AMC", "SET @data"},
    {117, noID, "AMC", "SET count 1 @data"},
    {117, noCount, "AMC", "SET @END"},
    {117, noID, "AMC", "SET count 1 @END"},
    {117, noData, "AMC", "SET count 1 id 1 @END"},
    {120, coordinateX, "AMC", "SET id 1 count 2 ^data 1 1 1\n@99999 1 1", 2},
    {121, coordinateY, "AMC", "SET id 1 count 2 ^data 1 @END", 1},
    {122, coordinateZ, "AMC", "SET id 1 count 2 ^data 1 1 @99999", 1},
    {155, "Not enough cubes defined (2 missing)", "AMC", "SET id 1 count 2 data ~-1 1 1", 1},
    {156, tooMany, "AMC", "SET id 1 count 1 ^data 1 1 1 @2 2 2", 2},
    {133, closing, "AMC", "SET id 1 count 1 data 1 1 1 ~x", 2},
    {181, "Set ID = 4 reused.", "AMC", "SET id 4 count 1 data 1 1 1 END END\r\nSET id 4 count 1 data 2 2 2 ~END"},
    // The second scan behind rows puts a second byte back.
    {181, "Set ID = 4 reused.", "AMC", "SET id 4 count 1 data 1 1 1 END data 2 2 2 @EN^D"},
};

void Check(const ErrorRow& row, std::size_t bufferSize) {
    const MarkedText marked(Sections(row.sections) + Replaced(row.text, "{cubes}", cubes));
    SCOPED_TRACE(marked.text);
    const Outcome outcome = ReadText(marked.text, {false, true, bufferSize});
    EXPECT_EQ(outcome.code, row.code);
    EXPECT_EQ(outcome.what, LocatedMessage("m.model", marked.reported.line, marked.reported.column,
                                           Replaced(row.message, "{dir}", ScratchDirectory())));
    EXPECT_EQ(ToText(outcome.place), ToText(marked.truth));
    EXPECT_EQ(outcome.place.path, ScratchDirectory() + "/m.model");
    EXPECT_EQ(outcome.row, row.row);
    if (row.file != nullptr) {
        EXPECT_EQ(outcome.file, row.file);
        EXPECT_GT(outcome.line, 0);
    }
}

TEST(ModelErrors, SayWhatAndWhere) {
    WriteFile("empty.model", "% nothing\n");
    for (const ErrorRow& row : table) {
        Check(row, 1);
        Check(row, Lexer::defaultBufferSize);
    }
}

/// Every message of the catalogue that a model file can bring about is in the table above, or comes from what is no
/// file: a directory (104) and an overlong path (175).
TEST(ModelErrors, CoverTheCatalogue) {
    std::set<int> raised = {ReadPath(ScratchDirectory()).code, ReadPath(std::string(300, 'x')).code};
    for (const ErrorRow& row : table) raised.insert(row.code);
    std::set<int> expected;
    for (int code = 102; code <= 183; ++code) expected.insert(code);
    expected.erase(153);  // There is no such message.
    expected.erase(182);  // A second DAMPING section is always taken.
    EXPECT_EQ(raised, expected);
}

}  // namespace
}  // namespace orvalo
