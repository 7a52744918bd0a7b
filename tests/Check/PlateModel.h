#pragma once

#include <string>
#include <vector>

#include "Support/ModelFiles.h"

/// A model in several files, and mistakes that can be made in it.
namespace orvalo::support {

/// A file of a valid model, the main file first.
struct File {
    std::string name;
    std::string text;
};

/// Rows of a plate of 6 cells to a line, each with `more` at its end and a number that no other row has.
inline std::string PlateRows(int rows, const std::string& more, double first = 0) {
    std::string text;
    for (int i = 0; i < rows; ++i) {
        text += ' ' + std::to_string(i % 6) + ' ' + std::to_string(i / 6) + more;
        text += first > 0 ? ' ' + std::to_string(first + i).substr(0, 5) + '\n' : "\n";
    }
    return text;
}

/// A model in several files, with bulk rows of every kind.
inline std::vector<File> PlateFiles() {
    std::string model = R"(; a plate
ANALYSIS
 CellSize 0.25,
 TimeStep 0.02
END
include "plate.materials"
CUBES
 count 30
 format 1
 data
(cubes)END
END
DAMPING
 count 12
 data
(damping)END
END
include "plate.signals"
SET
 id 1
 count 6
 data
(set)END
END
SENSOR
 id 1
 shape point
 position 1 2 1
 output U, V W
 filename "a.txt"
 writemode append
END
SENSOR
 id 2 shape point
 position 2 2 1
 output W
 filename "b.txt"
 notation scientific
END
DUMP
 id 4
 output U0
 filename "c.mat"
 fileformat mat
END
)";
    model = Replaced(model, "(cubes)", PlateRows(30, " 1 1", 20.5));
    model = Replaced(model, "(damping)", PlateRows(12, " 2 3", 0.25));
    model = Replaced(model, "(set)", PlateRows(6, " 9"));
    return {{"plate.model", model},
            {"plate.materials", R"(MATERIALS
 1 2 "top" 7.8e-6 0 1
  2e5 -40 0.1
  0.3 0 2
 2 0 "core" 2.7e-6 6.3e6 3.1e6
 3 1 "foot" 1.2e-6 3.5e3 0.4 ; soft
END
)"},
            {"plate.signals", R"(ACTUATOR
 shape point
 position 0 0 1
 input definition
 method force
 type fullpulse
 waveform square
 envelope none
 frequency 100
 duration 1.5
 phase 0
 direction U V
END
ACTUATOR
 shape point position 5 4 1
 input wave
 method absolute
 direction all
 table 1
 start 0.5
 factorU 2
END
TABLE
 id 1
 count 8
 data
 0 0.25 0.5
 0.75 1
 -1e-3 0 0.125
 END
END
PIEZO
 id 5
 position 1 1 1
 direction 0 1 0
 method force ; upwards
 amplitude 1.5
 count 4
 data
 0 0 t 1 1 1
 1 0 i
 2 0 i
 3 0 t 2 2 2
 END
 table id 1
 count 2 data 0 1
 END END
 table id 2
 count 2
 data 1 0 END
 END
END
)"}};
}

/// What is written in the plate instead of other text, with @ before the place of the error, and its code.
struct PlateMistake {
    const char* what;
    const char* with;
    int code;
};
inline const PlateMistake plateMistakes[] = {
    // Words.
    {"CellSize", "@Cellsise", 178},
    {"DAMPING", "@DAMPNIG", 132},
    {"TimeStep", "@#TimeStep", 105},
    {"\"foot\"", "@'foot'", 105},
    {"type fullpulse", "type @fulpulse", 168},
    {"waveform square", "waveform @triangle", 169},
    {"input definition", "input @defined", 166},
    {"method absolute", "method @absolut", 167},
    {"envelope none", "envelope @hann", 170},
    {"direction U V", "direction U @X", 178},
    {"output U,", "output @UV,", 178},
    {"output U0", "output @U\n", 178},
    {"notation scientific", "notation @fixed", 173},
    {"writemode append", "writemode @new", 172},
    {"fileformat mat", "fileformat @csv", 174},
    {"0.4 ; soft", "0.4 @# soft", 105},
    {"END\nSENSOR\n id 2", "@SENSOR\n id 2", 178},
    {" 0.3 0 2\n", " 0.3 0 2\n END\n@END\n", 132},
    // Numbers and names.
    {"0.25,", "@0.25mm,", 107},
    {"frequency 100", "frequency @1d2", 107},
    {"duration 1.5", "duration 1,@5", 178},
    {"factorU 2", "factorU = @= 2", 118},
    {"id 2 shape", "id @0 shape", 113},
    {"id 4", "id @\"4\"", 113},
    {"start 0.5", "start @-0.5", 119},
    {"filename \"a.txt\"", "filename @\"out/a.txt\"", 106},
    {"filename \"b.txt\"", "filename @\"b.txt", 109},
    {"phase 0\n direction", "phase\n @direction", 118},
    // Rows.
    {" 3 0 1 1 23.5", " 3 0 1 @9 23.5", 151},
    {" 1 2 1 1 33.5", " 1 2@.0 1 1 33.5", 122},
    {" 4 2 1 1 36.5", " 4 @-2 1 1 36.5", 121},
    {" 0 3 1 1 38.5", " ; the third\n @0 3 1 1 38.5", 155},
    {" 5 3 1 1 43.5", " 5 3 1 1 @hot", 180},
    {" 2 4 1 1 46.5", " 2 4 @32768 1 46.5", 122},
    {"END\nDAMPING", "@DAMPING", 178},
    {" 4 0 2 3 4.250\n 5 0 2 3 ", " 4 0 2 3\n 5 0 2 3 @", 151},
    {" 0 1 2 3 6.250", " 0 1 2 3 @x", 183},
    {" 3 1 2 3 9.250", " 3 1 2 @256 9.250", 150},
    {" 1 0 9", " 1 @+0 9", 121},
    {" 4 0 9", " 4 0 @z", 122},
    {"0 0.25 0.5", "0 @one 0.5", 118},
    {"-1e-3 0 0.125", "-1e-3 0 0.125 @7", 158},
    {"0 0 t 1 1 1", "0 0 t 1 1 @one", 112},
    {"2 0 i", "2 0 @k", 129},
    {"3 0 t 2 2 2\n END", "3 0 t 2 2 2\n 4 0 @i\n END", 131},
    {"direction 0 1 0", "direction 0 1 @1", 128},
    {"data 0 1\n END", "data 0 1 @2\n END", 158},
    {"table id 2\n count 2\n data", "table\n count 2\n @data", 117},
    {"method force ;", "method @pull ;", 167},
    {"table 1\n start", "table 1\n table @1\n start", 160},
    {"include \"plate.signals\"", "include @plate\ninclude \"plate.signals\"", 110},
    {"include \"plate.materials\"", "include @\"plates\"\ninclude \"plate.materials\"", 103},
};

}  // namespace orvalo::support
