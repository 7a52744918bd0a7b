#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// Coordinates, materials, rows, samples and the points of a patch.
inline constexpr Rule listRules[] = {
    {"invalid-x", Severity::Error, 120,
     "The first coordinate is no whole number, or out of range: -32768 to 32767, in rows 0 to 32767 and digits alone.",
     "position 40000 1 1", "position 4 1 1"},
    {"invalid-y", Severity::Error, 121,
     "The second coordinate is no whole number, or out of range: -32768 to 32767, in rows 0 to 32767 and digits alone.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 -1 1 1\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"invalid-z", Severity::Error, 122,
     "The third coordinate is no whole number, or out of range: -32768 to 32767, in rows 0 to 32767 and digits alone.",
     "position 1 1", "position 1 1 1"},
    {"duplicate-piezo-point", Severity::Error, 127, "Two points of a patch have one position.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 2 data\n"
     "    0 0 i\n"
     "    0 0 i\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 2 data\n"
     "    0 0 i\n"
     "    1 0 i\n"
     "  END\n"
     "END"},
    {"invalid-piezo-direction", Severity::Error, 128,
     "The direction of a patch is one of the axes 1 0 0, 0 1 0 and 0 0 1.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 1 1 0 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END"},
    {"invalid-piezo-point", Severity::Error, 129,
     "A point of a patch is 'x y t U V W', with the IDs of three tables, or 'x y i'.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 x\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END"},
    {"too-few-piezo-points", Severity::Error, 130, "Fewer points follow than 'count' says.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 2 data\n"
     "    0 0 i\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END"},
    {"too-many-piezo-points", Severity::Error, 131, "More points follow than 'count' says.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "    1 0 i\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 2 data\n"
     "    0 0 i\n"
     "    1 0 i\n"
     "  END\n"
     "END"},
    {"invalid-material-number", Severity::Error, 145,
     "Materials have whole numbers from 1 to 255; a material has as many numbers after its name as its format takes. 0 "
     "is air, which is built in.",
     "MATERIALS\n"
     "  0 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END"},
    {"duplicate-material", Severity::Error, 146, "Two materials have one number.",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "  1 0 \"iron\" 7.8e-6 5.9e6 3.2e6\n"
     "END",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "  2 0 \"iron\" 7.8e-6 5.9e6 3.2e6\n"
     "END"},
    {"invalid-material-format", Severity::Error, 147,
     "After the number of a material stands its format: 0 for wave speeds, 1 for elastic constants, 2 for coefficients "
     "over temperature.",
     "MATERIALS\n"
     "  1 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END"},
    {"missing-material-name", Severity::Error, 148, "After the format of a material stands its name in double quotes.",
     "MATERIALS\n"
     "  1 0 steel 7.85e-6 5.92e6 3.23e6\n"
     "END",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END"},
    {"unsupported-material-format", Severity::Error, 149, "The material format 3 is reserved.",
     "MATERIALS\n"
     "  1 3 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "END"},
    {"invalid-row-material", Severity::Error, 150,
     "The material of a row is a whole number from 1 to 255, of digits alone.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 steel\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"undefined-material", Severity::Error, 151, "A row has a material that MATERIALS does not define.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 9\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"too-few-rows", Severity::Error, 155,
     "Something other than a row stands where rows are still due, or rows end early without END. No comment and no "
     "include stands among rows.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  ; the second cube\n"
     "  2 1 1 1\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"too-many-rows", Severity::Error, 156,
     "More rows follow than 'count' says, or rows have more numbers than their format.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "  3 1 1 1\n"
     "END END",
     "CUBES count = 3 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "  3 1 1 1\n"
     "END END"},
    {"too-few-samples", Severity::Error, 157, "A table has fewer samples than 'count' says.",
     "TABLE id 3 count 3 data 0 1 END END", "TABLE id 3 count 2 data 0 1 END END"},
    {"too-many-samples", Severity::Error, 158, "A table has more samples than 'count' says.",
     "TABLE id 3 count 2 data 0 1 0 END END", "TABLE id 3 count 3 data 0 1 0 END END"},
    {"missing-temperature", Severity::Error, 180, "In format 1 a row of CUBES ends with a temperature.",
     "CUBES count = 1 format = 1 data\n"
     "  1 1 1 1 warm\n"
     "END END",
     "CUBES count = 1 format = 1 data\n"
     "  1 1 1 1 20.5\n"
     "END END"},
    {"missing-coefficient", Severity::Error, 183, "A row of DAMPING ends with a coefficient.",
     "DAMPING count = 1 data\n"
     "  1 1 1 1\n"
     "END END",
     "DAMPING count = 1 data\n"
     "  1 1 1 1 0.5\n"
     "END END"},
};

}  // namespace orvalo
