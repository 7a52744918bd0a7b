#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// What is read all the same, but was likely not meant.
inline constexpr Rule warningRules[] = {
    {"missing-temperatures", Severity::Warning, 0,
     "Materials of format 2 depend on temperature, but the cubes have none: room temperature is taken.",
     "MATERIALS 1 2 \"epoxy\" 0 0 1.16e-6 -90 -9000 3.4e6 0 0.0004 0.36 END\n"
     "CUBES count 1 format 0 data\n"
     "  1 1 1 1\n"
     "END END",
     "MATERIALS 1 2 \"epoxy\" 0 0 1.16e-6 -90 -9000 3.4e6 0 0.0004 0.36 END\n"
     "CUBES count 1 format 1 data\n"
     "  1 1 1 1 20\n"
     "END END"},
    {"ignored-temperatures", Severity::Warning, 0, "Cubes have temperatures, but no material depends on them.",
     "CUBES count 1 format 1 data\n"
     "  1 1 1 1 20\n"
     "END END",
     "CUBES count 1 format 0 data\n"
     "  1 1 1 1\n"
     "END END"},
    {"cells-without-row", Severity::Warning, 0,
     "Fewer rows follow than the count says: the missing ones are air at 0 0 0, with 0 for temperature or coefficient.",
     "CUBES count 2 format 0 data\n"
     "  1 1 1 1\n"
     "END END",
     "CUBES count 1 format 0 data\n"
     "  1 1 1 1\n"
     "END END"},
    {"duplicate-cell", Severity::Warning, 0,
     "Two rows have one position; it depends on the solver which of them counts.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  1 1 1 1\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"wrapped-number", Severity::Warning, 0,
     "A number is larger than 32 bits hold and was taken for what remains of it.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  4294967297 1 1 1\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  1 2 1 1\n"
     "END END"},
    {"outside-grid", Severity::Warning, 0,
     "The position of an actuator, a sensor, a point of a patch or of a set lies outside of the grid.",
     "SENSOR id 2 shape point position 900 1 1 output U filename \"a.txt\" END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END"},
    {"cell-without-cube", Severity::Warning, 0, "A position lies within the grid, but on a cell that has no cube.",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  3 1 1 1\n"
     "END END\n"
     "SENSOR id 2 shape point position 2 1 1 output U filename \"a.txt\" END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  3 1 1 1\n"
     "END END\n"
     "SENSOR id 2 shape point position 3 1 1 output U filename \"a.txt\" END"},
    {"no-direction", Severity::Warning, 0, "An actuator without a direction excites nothing.",
     "ACTUATOR shape point position 1 1 1 input wave table 3 method force END\n"
     "TABLE id 3 count 2 data 0 1 END END",
     "ACTUATOR shape point position 1 1 1 input wave table 3 method force direction U END\n"
     "TABLE id 3 count 2 data 0 1 END END"},
    {"empty-output", Severity::Warning, 0, "An output without a component records nothing.",
     "SENSOR id 2 shape point position 1 1 1 output filename \"a.txt\" END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END"},
    {"shared-output-file", Severity::Warning, 0, "Two outputs write into one file.",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END\n"
     "SENSOR id 3 shape point position 1 1 1 output U filename \"a.txt\" END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END\n"
     "SENSOR id 3 shape point position 1 1 1 output U filename \"b.txt\" END"},
    {"unused-table", Severity::Warning, 0, "No actuator, and in a patch no point, names the table.",
     "TABLE id 3 count 2 data 0 1 END END",
     "ACTUATOR shape point position 1 1 1 input wave table 3 method force direction U END\n"
     "TABLE id 3 count 2 data 0 1 END END"},
    {"unused-material", Severity::Warning, 0, "No cube has the material.",
     "MATERIALS\n"
     "  1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n"
     "  2 0 \"iron\" 7.8e-6 5.9e6 3.2e6\n"
     "END",
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END"},
    {"table-with-definition", Severity::Warning, 0,
     "An actuator by definition names a table too: the table drives it, and the definition is not used.",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input definition method force direction U\n"
     "  type halfpulse waveform sine envelope none frequency 0 duration 2 phase 0\n"
     "  table 3\n"
     "END\n"
     "TABLE id 3 count 2 data 0 1 END END",
     "ACTUATOR shape point position 1 1 1 input wave table 3 method force direction U END\n"
     "TABLE id 3 count 2 data 0 1 END END"},
    {"truncated-fraction", Severity::Warning, 0, "A whole number is due: the fraction is cut off.", "position 1.5 1 1",
     "position 1 1 1"},
    {"courant-limit", Severity::Warning, 0,
     "In one time step the fastest wave passes more than a cell. A simulation is then likely unstable, or the units do "
     "not fit together: the time step is in microseconds.",
     "ANALYSIS cellsize 0.5 timestep 5 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END"},
    {"few-samples-per-period", Severity::Warning, 0,
     "A waveform has fewer than two samples in a period, so that its frequency cannot be told from lower ones.",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input definition method force direction U\n"
     "  type continuouswave waveform sine envelope none\n"
     "  frequency 9000 duration 10 phase 0\n"
     "END",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input definition method force direction U\n"
     "  type continuouswave waveform sine envelope none\n"
     "  frequency 100 duration 10 phase 0\n"
     "END"},
    {"empty-set", Severity::Warning, 0, "A set has no row: all its points are 0 0 0.", "SET id 3 count 1 data END END",
     "SET id 3 count 1 data 1 1 1 END END"},
};

}  // namespace orvalo
