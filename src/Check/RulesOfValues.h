#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// Numbers, words of value and properties.
inline constexpr Rule valueRules[] = {
    {"invalid-table-id", Severity::Error, 112,
     "The tables that drive a point of a patch are named by IDs from 1 to 2147483647.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 t 0 1 1\n"
     "  END\n"
     "  table id 1 count 2 data 0 1 END END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 t 1 1 1\n"
     "  END\n"
     "  table id 1 count 2 data 0 1 END END\n"
     "END"},
    {"invalid-id", Severity::Error, 113,
     "An ID is a whole number from 1 to 2147483647. In a SET no '=' stands after 'id'.",
     "SET id = 3 count 1 data\n"
     "  1 1 1\n"
     "END END",
     "SET id 3 count 1 data\n"
     "  1 1 1\n"
     "END END"},
    {"invalid-enabled", Severity::Error, 114, "'enabled' is 0, which switches a section off, or 1.", "enabled true",
     "enabled 1"},
    {"missing-count", Severity::Error, 115, "In a PIEZO 'count' must stand before 'data'.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  data\n"
     "    0 0 i\n"
     "  END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END"},
    {"invalid-count", Severity::Error, 116,
     "'count' is a whole number of at least 1: how many rows, points or samples follow.",
     "TABLE id 3 count 0 data END END", "TABLE id 3 count 2 data 0 1 END END"},
    {"missing-property", Severity::Error, 117,
     "A property that the section must have is missing, or does not stand before the rows, which need it.",
     "ANALYSIS cellsize 0.5 END", "ANALYSIS cellsize 0.5 timestep 0.05 END"},
    {"not-a-number", Severity::Error, 118, "The value of the property is a number, without quotes.", "duration \"2\"",
     "duration 2"},
    {"value-out-of-range", Severity::Error, 119,
     "The property takes other numbers only: lengths and durations are above 0; times, frequencies and starts are at "
     "least 0.",
     "duration 0", "duration 2"},
    {"unknown-shape", Severity::Error, 123, "The only shape of an actuator or sensor is 'point'.", "shape disc",
     "shape point"},
    {"not-a-direction", Severity::Error, 124,
     "The directions of an actuator are words without quotes: U, V, W or All, blanks between them.", "direction \"U\"",
     "direction U"},
    {"not-a-sensor-output", Severity::Error, 125,
     "The outputs of a sensor are words without quotes: U, V, W or M, blanks between them.", "output \"U\"",
     "output U"},
    {"not-a-dump-output", Severity::Error, 126,
     "The outputs of a dump are words without quotes: U0, V0, W0, U1, V1, W1, U2, V2, W2 or All, blanks between them.",
     "DUMP id 2 output \"U0\" filename \"d.txt\" END", "DUMP id 2 output U0 filename \"d.txt\" END"},
    {"invalid-cubes-format", Severity::Error, 152,
     "The format of CUBES is 0, or 1 if every row ends with a temperature.",
     "CUBES count = 2 format = 2 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END",
     "CUBES count = 2 format = 0 data\n"
     "  1 1 1 1\n"
     "  2 1 1 1\n"
     "END END"},
    {"unsupported-init", Severity::Error, 154, "'init' in CUBES is reserved.",
     "CUBES init 0 count = 1 format = 0 data\n"
     "  1 1 1 1\n"
     "END END",
     "CUBES count = 1 format = 0 data\n"
     "  1 1 1 1\n"
     "END END"},
    {"missing-properties", Severity::Error, 159, "Properties that the section must have are missing at its END.",
     "SENSOR id 2 shape point output U END", "SENSOR id 2 shape point position 1 1 1 output U filename \"u.txt\" END"},
    {"second-table", Severity::Error, 160, "An actuator is driven by one table.",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input wave method force\n"
     "  table 3 table 3\n"
     "END\n"
     "TABLE id 3 count 1 data 1 END END",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input wave method force\n"
     "  table 3\n"
     "END\n"
     "TABLE id 3 count 1 data 1 END END"},
    {"append-to-mat-file", Severity::Error, 165, "Only text files can be appended to.",
     "DUMP id 2 output All filename \"d.mat\"\n"
     "  fileformat mat writemode append\n"
     "END",
     "DUMP id 2 output All filename \"d.mat\"\n"
     "  fileformat mat writemode create\n"
     "END"},
    {"unknown-input", Severity::Error, 166, "The input of an actuator is 'definition' or 'wave'.", "input signal",
     "input definition"},
    {"unknown-method", Severity::Error, 167, "The method is 'force' or 'absolute'.", "method displacement",
     "method absolute"},
    {"unknown-type", Severity::Error, 168, "The type of a signal is 'fullpulse', 'halfpulse' or 'continuouswave'.",
     "type pulse", "type fullpulse"},
    {"unknown-waveform", Severity::Error, 169, "The waveform is 'square', 'sine' or 'gaussian'.", "waveform sinus",
     "waveform sine"},
    {"unknown-envelope", Severity::Error, 170, "The envelope is 'none' or 'hannwindow'.", "envelope hann",
     "envelope hannwindow"},
    {"unknown-processing", Severity::Error, 171, "The processing is 'none' or 'invert'.", "processing inverted",
     "processing invert"},
    {"unknown-writemode", Severity::Error, 172, "The write mode is 'create', 'append' or 'overwrite'.",
     "writemode replace", "writemode overwrite"},
    {"unknown-notation", Severity::Error, 173, "The notation is 'decimal' or 'scientific'.", "notation exponential",
     "notation scientific"},
    {"unknown-fileformat", Severity::Error, 174, "The file format is 'txt' or 'mat', without quotes.", "fileformat csv",
     "fileformat txt"},
    {"unknown-keyword", Severity::Error, 178,
     "The word is no property of the section, or the section before has no END.", "frequenzy 100", "frequency 100"},
};

}  // namespace orvalo
