#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// Sections: their order, their ends, and what refers to them.
inline constexpr Rule sectionRules[] = {
    {"unknown-section", Severity::Error, 132,
     "A section begins with its name; nothing stands between sections but includes and comments.",
     "SENSORS id 2 shape point position 1 1 1 output U filename \"a.txt\" END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END"},
    {"missing-end", Severity::Error, 133, "The rows of a section, or a section that is switched off, have no END.",
     "CUBES count = 1 format = 0 data\n"
     "  1 1 1 1\n"
     "STOP",
     "CUBES count = 1 format = 0 data\n"
     "  1 1 1 1\n"
     "END END"},
    {"analysis-not-first", Severity::Error, 134, "ANALYSIS comes first in a model.",
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "ANALYSIS cellsize 0.5 timestep 0.05 END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END"},
    {"duplicate-analysis", Severity::Error, 135, "A model has one ANALYSIS.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "ANALYSIS cellsize 0.5 timestep 0.05 END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END"},
    {"missing-analysis", Severity::Error, 136, "A model begins with ANALYSIS; the file ends without one.",
     "; nothing else", "ANALYSIS cellsize 0.5 timestep 0.05 END"},
    {"materials-not-second", Severity::Error, 137, "MATERIALS comes second in a model, after ANALYSIS.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END"},
    {"duplicate-materials", Severity::Error, 138, "A model has one MATERIALS.",
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END",
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END"},
    {"missing-materials", Severity::Error, 139, "A model has MATERIALS after ANALYSIS; the file ends without.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END"},
    {"cubes-not-third", Severity::Error, 140, "CUBES comes third in a model, after MATERIALS.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END\n"
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END"},
    {"duplicate-cubes", Severity::Error, 141, "A model has one CUBES.",
     "CUBES count 1 format 0 data 1 1 1 1 END END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END",
     "CUBES count 1 format 0 data 1 1 1 1 END END"},
    {"missing-cubes", Severity::Error, 142, "A model has CUBES after MATERIALS; the file ends without.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END"},
    {"missing-excitation", Severity::Error, 143,
     "Nothing excites the model: it needs an ACTUATOR or a PIEZO that is not switched off.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END\n"
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END"},
    {"missing-output", Severity::Error, 144,
     "Nothing is recorded: a model needs a SENSOR or a DUMP that is not switched off.",
     "ANALYSIS cellsize 0.5 timestep 0.05 END\n"
     "MATERIALS 1 0 \"steel\" 7.85e-6 5.92e6 3.23e6 END\n"
     "CUBES count 1 format 0 data 1 1 1 1 END END\n"
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END"},
    {"duplicate-table-id", Severity::Error, 161, "Two tables have one ID.",
     "TABLE id 3 count 1 data 1 END END\n"
     "TABLE id 3 count 1 data 2 END END",
     "TABLE id 3 count 1 data 1 END END\n"
     "TABLE id 4 count 1 data 2 END END"},
    {"second-piezo", Severity::Error, 162, "A model has one PIEZO at most.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 i\n"
     "  END\n"
     "END\n"
     "PIEZO\n"
     "  id 3 position 1 1 1 direction 0 0 1 method force\n"
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
    {"duplicate-sensor-id", Severity::Error, 163, "Two sensors have one ID.",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END\n"
     "SENSOR id 2 shape point position 1 1 1 output U filename \"b.txt\" END",
     "SENSOR id 2 shape point position 1 1 1 output U filename \"a.txt\" END\n"
     "SENSOR id 3 shape point position 1 1 1 output U filename \"b.txt\" END"},
    {"duplicate-dump-id", Severity::Error, 164, "Two dumps have one ID.",
     "DUMP id 2 output All filename \"a.txt\" END\n"
     "DUMP id 2 output U0 filename \"b.txt\" END",
     "DUMP id 2 output All filename \"a.txt\" END\n"
     "DUMP id 3 output U0 filename \"b.txt\" END"},
    {"undefined-piezo-table", Severity::Error, 176,
     "A point of a patch names a table that the patch does not define: it finds only those inside its own section.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 t 1 1 5\n"
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
    {"undefined-table", Severity::Error, 177, "An actuator names a table that the model does not define.",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input wave method force\n"
     "  table 9\n"
     "END\n"
     "TABLE id 3 count 1 data 1 END END",
     "ACTUATOR\n"
     "  shape point position 1 1 1 input wave method force\n"
     "  table 3\n"
     "END\n"
     "TABLE id 3 count 1 data 1 END END"},
    {"different-sample-counts", Severity::Error, 179, "The tables of a patch have different numbers of samples.",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 t 1 1 2\n"
     "  END\n"
     "  table id 1 count 2 data 0 1 END END\n"
     "  table id 2 count 1 data 0 END END\n"
     "END",
     "PIEZO\n"
     "  id 2 position 1 1 1 direction 0 0 1 method force\n"
     "  count 1 data\n"
     "    0 0 t 1 1 2\n"
     "  END\n"
     "  table id 1 count 2 data 0 1 END END\n"
     "  table id 2 count 2 data 0 1 END END\n"
     "END"},
    {"duplicate-set-id", Severity::Error, 181, "Two sets have one ID.",
     "SET id 3 count 1 data 1 1 1 END END\n"
     "SET id 3 count 1 data 2 1 1 END END",
     "SET id 3 count 1 data 1 1 1 END END\n"
     "SET id 4 count 1 data 2 1 1 END END"},
};

}  // namespace orvalo
