#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// Files, characters and names.
inline constexpr Rule textRules[] = {
    {"out-of-memory", Severity::Error, 102,
     "There is no memory for what the file asks for: a count that is too large, or a generated signal of too many "
     "samples, as with a time step of 0.",
     "ANALYSIS cellsize 0.5 timestep 0 END", "ANALYSIS cellsize 0.5 timestep 0.05 END"},
    {"cannot-open-file", Severity::Error, 103,
     "A file cannot be opened. Included files are looked for in the directory of the main file, under their names in "
     "lower case.",
     "include \"none.cubes\"", "include \"grid.cubes\""},
    {"cannot-read-file", Severity::Error, 104, "A file was opened but cannot be read, as if it is a directory.",
     "include \"signals\"", "include \"grid.cubes\""},
    {"invalid-character", Severity::Error, 105,
     "A character that begins no word, number, name or comment. Comments begin with ';', '%' or '$'; only ASCII may "
     "stand outside of them.",
     "# the sensors", "; the sensors"},
    {"invalid-character-in-word", Severity::Error, 106,
     "A word consists of letters, digits and '_'; a name in quotes of letters, digits and _ . + - = alone. No name "
     "holds a directory.",
     "filename \"out/end.txt\"", "filename \"end.txt\""},
    {"invalid-character-in-number", Severity::Error, 107,
     "A number is decimal, with a point; its exponent is written with 'e'. Numbers have no units.", "duration 2us",
     "duration 2"},
    {"unexpected-end-of-file", Severity::Error, 108, "The file ends within a name or a number.", "filename \"end.txt",
     "filename \"end.txt\""},
    {"unexpected-end-of-line", Severity::Error, 109,
     "The line ends within a name, whose closing quote is missing, or within a number.", "filename \"end.txt\n",
     "filename \"end.txt\""},
    {"missing-include-name", Severity::Error, 110,
     "After 'include' stands the name of a file in double quotes, without '='.", "include grid.cubes",
     "include \"grid.cubes\""},
    {"repeated-include", Severity::Error, 111, "A file is included once at most, and never by itself.",
     "include \"grid.cubes\"\n"
     "include \"grid.cubes\"",
     "include \"grid.cubes\""},
    {"path-too-long", Severity::Error, 175,
     "The absolute path of the main file cannot be found out, or has more than 259 bytes.",
     "orvalo check some/path/of/300/bytes.model", "cd some/path/of/300 && orvalo check bytes.model"},
};

}  // namespace orvalo
