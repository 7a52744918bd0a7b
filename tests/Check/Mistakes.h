#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Support/ModelFiles.h"

/// A model, mistakes that can be made in it, and what is to be said of each.
namespace orvalo::support {

inline const std::string explainedModel = R"(ANALYSIS
  cellsize = 0.5
  timestep = 0.05
END
MATERIALS
  1 0 "steel" 7.85e-6 5.92e6 3.23e6
  2 1 "alu" 2.7e-6 7.0e7 0.33
END
CUBES
  count = 3
  format = 0
  data
    1 1 1 1
    2 1 1 1
    3 1 1 2
  END
END
ACTUATOR shape point position 1 1 1
  input wave method force
  direction U
  table 7
END
ACTUATOR shape point position 2 1 1
  input definition method force type halfpulse waveform sine envelope none
  frequency 0  duration 2  phase 0
END
TABLE id 7
  count 4
  data 0 0.5 1 0.5 END
END
PIEZO id 1 position 1 1 1 direction 0 0 1 method force
  count 3 data
    0 0 t 1 1 2
    1 0 i
    2 0 t 2 2 1
  END
  table id 1 count 3 data 0 1 0 END END
  table id 2 count 3 data 0 -1 0 END END
END
SENSOR id 1
  shape point
  position 3 1 1
  output U
  filename "end.txt"
END
DUMP id 1 output All filename "field.mat" fileformat mat END
SET id 3 count 2 data
  1 1 1
  2 1 1
END END
)";

/// A mistake that is made by putting one text for another, or at the end; the error, its place, with the name of the
/// file where that is an included one, and words of its notes and fixes, each of which begins with the line that it is
/// about where there is one.
struct Mistake {
    const char* what;
    const char* with;
    int code;
    const char* place;
    std::vector<const char*> told;
    /// Whether the length or the shape of a list is unknown after it, so that the list is not looked at.
    bool spoilsList = false;
};

inline const Mistake explainedMistakes[] = {
    // Files.
    {"TABLE", "include grid.cubes\nTABLE", 110, "27:9", {"double quotes", "27 -> \"grid.cubes\""}},
    {"TABLE", "include = \"grid.cubes\"\nTABLE", 110, "27:9", {"No '='", "27 -> "}},
    {"TABLE", "include TABLE", 110, "27:9", {"name of a file"}},
    {"TABLE",
     "include \"grip.cubes\"\nTABLE",
     103,
     "27:9",
     {"No such file", "directory of the main file", "27 -> \"grid.cubes\""}},
#if !defined(_WIN32)  // There that is the same file.
    {"TABLE", "include \"upper.cubes\"\nTABLE", 103, "27:9", {"'Upper.cubes'", "lower case"}},
#endif
    {"TABLE", "include \"x\"\nTABLE", 103, "27:9", {"one character"}},
    {"TABLE", "include \"folder\"\nTABLE", 104, "folder:1:1", {"Is a directory"}},
    {"TABLE", "include \"m.model\"\nTABLE", 111, "27:9", {"main file"}},
    {"TABLE", "include \"grid.cubes\"\ninclude \"Grid.cubes\"\nTABLE", 111, "28:9", {"27 A file is included once"}},
    // Numbers.
    {"0.5\n", "\"0.5\"\n", 118, "2:14", {"2 -> 0.5"}},
    {"cellsize = 0.5", "cellsize = = 0.5", 118, "2:14", {"One '='", "2 -> "}},
    {"= 0.5\n", "\n", 118, "3:3", {"2 The value of 'cellsize' is missing"}},
    {"= 0.5\n", "= 0.5.5\n", 107, "2:14", {"one point at most"}},
    {"frequency 0  duration", "frequency -  duration", 107, "25:13", {"A sign must"}},
    {"phase 0\n", "phase 0e;duration\n", 107, "25:34", {"';' stands in comments"}},
    {"= 0.5\n", "= 0,5\n", 119, "2:14", {"decimal comma", "2 -> ."}},
    {" 2 1 1 1", " .2 1 1 1", 155, "14:5", {"whole numbers"}},
    {" 2 1 1 1", " x2 1 1 1", 155, "14:5", {"'x2' is no number", "10 The count says 3 rows"}},
    {"= 0.5\n", "half\n", 118, "2:12", {"decimal number"}},
    {"0.05", "inf", 118, "3:14", {"1e300"}},
    {"= 0.5\n", "= 0\n", 119, "2:14", {"above 0."}},
    {"= 0.05", "= -1", 119, "3:14", {"at least 0."}},
    {"table 7", "start 1e12 table 7", 119, "21:9", {"3 With this time step", "107374182.35"}},
    {"= 0.05\n", "= 0\n", 102, "51:1", {"3 A time step of 0", "25 This signal"}},
    {"duration 2", "duration 1e15", 102, "51:1", {"25 This signal has", "2e+16", "3 The time step"}},
    {"count = 3", "count = 9e18", 102, "12:3", {"10 This count"}, true},
    {"id 7", "id 0", 113, "27:10", {"from 1 to 2147483647"}},
    {"SET id", "SET id =", 113, "47:8", {"No '='", "47 -> "}},
    {"id 3", "id=3", 113, "47:7", {"No '='", "47 -> "}},
    {"t 1 1 2", "t 1 1 0.5", 112, "33:15", {"IDs of three tables"}},
    {"input wave", "enabled true input wave", 114, "19:11", {"0 switches", "19 -> 1"}},
    {"count 4", "count 0", 116, "28:9", {"from 1 to 2147483647"}, true},
    {"count = 3", "count = \"3\"", 116, "10:11", {"10 -> 3"}, true},
    {"count 3 data", "count 0 data", 116, "32:9", {"of at least 1"}, true},
    {"format = 0", "format = 2", 152, "11:12", {"temperature follows"}, true},
    {"format = 0", "init 0 format = 0", 154, "11:3", {"reserved"}},
    {"position 3 1 1", "position 3 1", 122, "43:3", {"42 'position' takes three", "of them stand"}},
    {"position 3 1 1", "position 3 99999 1", 121, "42:14", {"-32768 to 32767"}},
    // Properties.
    {"cellsize = 0.5", "", 117, "4:1", {"1 ANALYSIS, which begins here, lacks 'cellsize'"}},
    {"count = 3\n  format = 0\n", "", 117, "10:5", {"'count' and 'format' are to stand before", "9 CUBES"}, true},
    {"count 3 data\n", "data\n", 115, "32:3", {"31 'count'"}, true},
    {"phase 0", "", 159, "26:1", {"23 ACTUATOR", "'phase'"}},
    {"table 7\n", "\n", 159, "22:1", {"18 ACTUATOR", "'table'"}},
    {"table id 2 count 3 data 0 -1 0 END", "table id 2 count 3", 159, "38:22", {"38 The table", "'data'"}},
    {"table 7", "table 7 table 7", 160, "21:17", {"21 An actuator is driven by one"}},
    {"fileformat mat", "fileformat mat writemode append", 165, "46:75", {"46 Only text", "46 -> create", "46 -> txt"}},
    {"filename \"end.txt\"", "filename end.txt", 107, "44:15", {"44 -> \"end.txt\""}},
    {"SENSOR id 1", "SENSOR", 159, "45:1", {"40 SENSOR", "'id'"}},
    {"  filename \"end.txt\"\nEND\n",
     "",
     178,
     "44:1",
     {"40 SENSOR begins here and has no END", "It lacks 'filename'", "44 -> END"}},
    // Materials.
    {"\"steel\"", "steel", 148, "6:7", {"6 -> \"steel\""}},
    {"3.23e6", "", 146, "7:5", {"6 Material 1 has 2 numbers", "format 0 takes 3"}},
    {"3.23e6", "3.23e6 0.3", 145, "6:37", {"6 Material 1 has 4 numbers"}},
    {"3.23e6", "x", 118, "6:30", {"6 Material 1 has 2 numbers"}},
    {"1 0 \"steel\"", "0 0 \"steel\"", 145, "6:3", {"air"}},
    {"2 1 \"alu\"", "1 1 \"alu\"", 146, "7:3", {"6 Material 1 was defined", "7 -> 2"}},
    {"2 1 \"alu\"", "2 \"alu\"", 147, "7:5", {"format is missing"}},
    {"2 1 \"alu\"", "2 7 \"alu\"", 147, "7:5", {"density, longitudinal"}},
    {"2 1 \"alu\"", "2 3 \"alu\"", 149, "7:7", {"reserved"}},
    {"0.33\nEND", "0.33", 145, "8:1", {"5 MATERIALS begins here and has no END", "8 -> END"}},
    // Rows.
    {"count = 3", "count = 2", 156, "15:5", {"10 The count says 2 rows", "15 3 rows in all", "10 -> 3"}, true},
    {"    3 1 1 2\n", "    3 1 1 2\n    4 1 1 2\n    5 1 1 x\n", 156, "16:5", {"10 The count says 3 rows"}, true},
    {"shape point\n", "shape pont\n", 123, "41:9", {"mean point", "41 -> point"}},
    {"format = 0", "format = 1", 151, "15:5", {"13 This line has 4 numbers", "11 In format 1", "11 -> 0"}, true},
    {" 1 1 1 1\n    2 1 1 1\n    3 1 1 2",
     " 1 1 1 1 5.5\n    2 1 1 1 5.5\n    3 1 1 2 5.5",
     121,
     "13:14",
     {"13 This line has 5 numbers", "11 -> 1"},
     true},
    {" 2 1 1 1", " 2 1 1", 151, "15:5", {"14 This line has 3 numbers; a row is 4"}},
    {" 2 1 1 1", " 2.0 1.0 1.0 1", 121, "14:6", {"digits alone", "14 ->  1 1"}},
    {" 2 1 1 1", " 2 1.0 1 1", 122, "14:8", {"14 ->  1"}},
    {" 2 1 1 1", " 2.5 1 1 1", 121, "14:6", {"digits alone"}},
    {" 2 1 1 1", " 2 +1 1 1", 121, "14:7", {"no sign", "14 -> "}},
    {" 2 1 1 1", " 2 1 -1 1", 122, "14:9", {"without a sign"}},
    {" 2 1 1 1", " -2 1 1 1", 155, "14:5", {"without a sign", "10 The count says 3 rows; 1 stands"}},
    {" 2 1 1 1", " 2 1 40000 1", 122, "14:9", {"to 32767"}},
    {" 2 1 1 1", " 2 1 1 steel", 150, "14:11", {"a row is x y z material"}},
    {" 2 1 1 1", " 2 1 1 0", 150, "14:11", {"air", "materials: 1, 2"}},
    {" 2 1 1 1", " 2 1 1 5", 151, "14:11", {"Defined materials: 1, 2"}},
    {" 2 1 1 1", " 2 1 1 1 ; comment", 155, "15:5", {"14 No comment", "14 -> "}},
    {" 2 1 1 1", " ; comment\n    2 1 1 1", 155, "15:5", {"14 No comment", "14 -> "}},
    {" 2 1 1 1", " include \"row\"", 155, "row:1:1", {"14 No include"}},
    {"data\n", "data =\n", 155, "12:8", {"No '='"}},
    {"  END\nEND\nACT", "ACT", 133, "16:1", {"12 The rows begin here", "16 -> END END"}},
    {"  END\nEND\nACT", "  EMD\nEND\nACT", 133, "16:3", {"mean END", "16 -> END"}},
    {"0.5 END", "END", 157, "29:16", {"28 The count says 4 samples", "29 3 samples", "28 -> 3"}},
    {"0.5 END", "0.5 2 END", 158, "29:20", {"28 The count says 4 samples", "28 -> 5"}},
    {"0.5 END", "x END", 118, "29:16", {"'x' is no number"}},
    {"1 0.5 END", "1 0.5 id 7", 158, "29:20", {"29 The rows begin here", "29 -> END "}},
    {"0.5 END", "0.5 EMD", 158, "29:20", {"29 -> END"}},
    {"2 0 t 2 2 1\n  END", "2 0 t 2 2 1\n  EDN", 120, "36:3", {"36 -> END"}},
    // Patches.
    {"0 0 1 method", "z method", 120, "31:37", {"axes", "31 -> 0 0 1"}},
    {"0 0 1 method", "0 0 -1 method", 128, "31:41", {"three axes"}},
    {"1 0 i", "0 0 i", 127, "34:9", {"33 The point 0 0"}},
    {"1 0 i", "1 0 k", 129, "34:9", {"'x y t U V W'"}},
    {"1 0 i", "1 99999 i", 121, "34:7", {"-32768 to 32767"}},
    {"1 0 i\n", "\n", 130, "36:3", {"32 The count says 3 points", "35 2 points", "32 -> 2"}},
    {"1 0 i\n", "1 0 i 3 0 i\n", 131, "35:15", {"32 The count says 3 points", "32 -> 4"}},
    {"t 1 1 2", "t 1 1 5", 176, "51:1", {"33 Table 5 is used", "patch: 1, 2"}},
    {"t 1 1 2", "t 1 1 7", 176, "51:1", {"27 This TABLE is none"}},
    {"count 3 data 0 -1 0", "count 2 data 0 -1", 179, "38:36", {"37 This table has 3", "38 This table has 2"}},
    {"table id 2", "table id 1", 161, "38:38", {"37 The ID was first", "38 -> 2"}},
    // Sections.
    {"table 7", "table 8", 177, "51:1", {"21 Table 8 is used", "tables: 7", "21 -> 7"}},
    {"", "TABLE id 7 count 1 data 1 END END", 161, "51:31", {"27 The ID was first", "51 -> 8"}},
    {"", "SENSOR id 1 shape point position 1 1 1 output U filename \"a\" END", 163, "51:62", {"40 The ID", "51 -> 2"}},
    {"", "DUMP id 1 output U0 filename \"a\" END", 164, "51:34", {"46 The ID", "51 -> 2"}},
    {"", "SET id 3 count 1 data 1 1 1 END END", 181, "51:29", {"47 The ID", "51 -> 4"}},
    {"",
     "PIEZO id 2 position 0 0 0 direction 1 0 0 method force count 1 data 0 0 i END END",
     162,
     "51:79",
     {"31 A model has one PIEZO"}},
    {"", "CUBES count 1 format 0 data 1 1 1 1 END END", 141, "51:1", {"9 A model has one CUBES"}},
    {"MATERIALS\n",
     "SET id 9 count 1 data 1 1 1 END END MATERIALS\n",
     137,
     "5:1",
     {"MATERIALS is due", "5 MATERIALS stands here"}},
    {"", "ACTUATOR enabled 0", 133, "52:1", {"51 ACTUATOR begins here, is switched off", "52 -> \nEND"}},
};

/// The files that the mistakes include.
inline void WriteIncludedFiles() {
    WriteFile("grid.cubes", "; nothing");
    WriteFile("Upper.cubes", "; nothing");
    WriteFile("row", "2 1 1 1");
    std::filesystem::create_directory(ScratchDirectory() + "/folder");
}

/// Line and column, with the name of the file before them where it is not `mainFile`.
inline std::string PlaceIn(const std::string& mainFile, const InputPlace& place) {
    const std::string name = std::filesystem::path(place.path).filename().string();
    return (name == mainFile ? "" : name + ':') + std::to_string(place.line) + ':' + std::to_string(place.column);
}

}  // namespace orvalo::support
