#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Check/CheckModel.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

/// A model of which nothing is to be said.
const std::string valid = R"(ANALYSIS cellsize 0.5 timestep 0.04 END
MATERIALS
1 0 "steel" 7.85e-6 5.92e6 3.23e6
2 1 "aluminium" 2.7e-6 7.0e7 0.33
END
CUBES count 4 format 0 data
1 1 1 1
2 1 1 1
1 3 1 1
1 1 5 1
END END
DAMPING count 2 data 9 1 1 1 0.5, 10 1 1 2 1 END END
ACTUATOR shape point position 1 1 1 input definition method force direction U
type continuouswave waveform sine envelope none frequency 100 duration 20 phase 0 END
ACTUATOR shape point position 2 1 1 method absolute direction All input wave table 7 END
TABLE id 7 count 2 data 0 1 END END
PIEZO id 1 position 1 3 1 direction 0 0 1 method force count 2 data 0 0 t 4 4 4 1 0 i END
table id 4 count 1 data 1 END END END
SENSOR id 1 shape point position 9 1 1 output U filename "a.txt" END
DUMP id 1 output U0 filename "b.txt" END
SET id 3 count 3 data 1 1 1, 2 1 1, 10 1 1 END END
)";

/// What is to be said, a line each: rule, place, the row, and with what places notes and fixes follow.
std::string Told(const std::vector<Diagnostic>& diagnostics) {
    std::string text;
    const auto at = [](const InputPlace& place) {
        return std::to_string(place.line) + ':' + std::to_string(place.column);
    };
    for (const Diagnostic& told : diagnostics) {
        const bool isError = told.severity == Severity::Error;
        text += (text.empty() ? "" : ", ") + (isError ? "error " + std::to_string(told.code) : told.rule) + ' ' +
                at(told.place) + '+' + std::to_string(told.length);
        const std::size_t more = told.message.find(" more of these");
        if (more != std::string::npos) text += " and " + told.message.substr(0, more);
        for (const InputPlace& include : told.includedFrom) text += " in " + at(include);
        if (told.row > 0) text += " row " + std::to_string(told.row);
        for (const Note& note : told.notes) text += note.place.path.empty() ? " note" : " note " + at(note.place);
        for (const Fix& fix : told.fixes) text += " fix " + at(fix.place) + " '" + fix.replacement + '\'';
    }
    return text;
}

std::string Check(const std::string& text, std::uint64_t perSection = 20) {
    CheckOptions options;
    options.perSection = perSection;
    return Told(CheckModel(support::WriteFile("warned.model", text), options));
}

struct Change {
    const char* what;
    const char* with;
    const char* told;
};

TEST(Warnings, TellWhatWasLikelyNotMeant) {
    const Change changes[] = {
        {"", "", ""},
        // Rows that are missing, or given twice.
        {"CUBES count 4", "CUBES count 6", "cells-without-row 6:13+1 note 11:1 fix 6:13 '4'"},
        {"1 1 1 1\n2 1 1 1\n1 3 1 1\n1 1 5 1\nEND END\nDAMPING count 2 data 9 1 1 1 0.5, 10 1 1 2 1 END END", "END END",
         "cells-without-row 6:13+1 note 7:1"},
        {"DAMPING count 2", "DAMPING count 3", "cells-without-row 12:15+1 note 12:46 fix 12:15 '2'"},
        {"SET id 3 count 3", "SET id 3 count 9", "cells-without-row 21:16+1 note 21:44 fix 21:16 '3'"},
        {"1 1 1, 2 1 1, 10 1 1 END END\n", "END END\n", "empty-set 21:1+3"},
        {"2 1 1 1\n1 3 1 1\n1 1 5 1", "1 3 1 1\n1 1 5 1\n2 1 1 1", ""},
        {"2 1 1 1\n1 3 1 1\n1 1 5 1", "1 3 1 1\n1 1 5 1 1\n3  1 1",
         "duplicate-cell 9:9+1 row 4 note 8:1, cell-without-cube 15:31+5, cell-without-cube 21:30+5 row 2"},
        {"10 1 1 2 1 END", "9 1 1 2 1 END", "duplicate-cell 12:35+5 row 2 note 12:22, outside-grid 21:37+6 row 3"},
        // Numbers that are not taken as written; those that are refused are errors alone.
        {"1 3 1 1\n", "1 4294967299 00000000001 1\n", "wrapped-number 9:3+10 row 3"},
        {"1 3 1 1\n", "1 3 1 4294967552\n", "error 150 9:7+10 row 3 note"},
        {"position 9 1 1", "position 4294967305 1.75 1",
         "wrapped-number 19:34+10, truncated-fraction 19:45+4 fix 19:45 '1'"},
        {"2 1 \"aluminium\"", "2.5 1.9 \"aluminium\"",
         "truncated-fraction 4:1+3 fix 4:1 '2', truncated-fraction 4:5+3 fix 4:5 '1'"},
        {"SET id 3 ", "SET id 3e0 ", ""},
        {"position 9 1 1", "position 9.5e0+1 1", "truncated-fraction 19:34+5 fix 19:34 '9'"},
        {"SENSOR id 1", "SENSOR id 0.5", "error 113 19:11+3 note"},
        // Places.
        {"position 1 1 1 input", "position -1 1 1 input", "outside-grid 13:31+6"},
        {"position 1 3 1 dir", "position 1 2 1 dir", "cell-without-cube 17:21+5"},
        {"position 9 1 1", "position 9, 2 1", "cell-without-cube 19:34+6"},
        {"2 1 1, 10 1 1 END", "1 1 6, 10 2 5 END", "outside-grid 21:30+5 row 2, cell-without-cube 21:37+6 row 3"},
        // Excitation.
        {"direction All ", "", "no-direction 15:1+8"},
        {"direction U\n", "direction\n", "no-direction 13:67+9"},
        {"phase 0 END", "phase 0 table 7 END", "table-with-definition 14:89+1 note 13:43 fix 13:43 'wave'"},
        {"TABLE id 7 count 2 data 0 1 END END", "TABLE id 7 count 1 data 0 END END TABLE id 8 count 1 data 0 END END",
         "unused-table 16:44+1"},
        {"t 4 4 4", "i", "unused-table 18:10+1"},
        {"frequency 100", "frequency 13e3", "few-samples-per-period 14:59+4"},
        {"frequency 100", "frequency 12e3", ""},
        {"continuouswave waveform sine envelope none frequency 100 duration 20",
         "halfpulse waveform square envelope none frequency 0 duration 0.03", "few-samples-per-period 14:67+4"},
        {"continuouswave waveform sine envelope none frequency 100 duration 20",
         "fullpulse waveform gaussian envelope none frequency 0 duration 0.03", ""},
        // Materials and the time step.
        {"10 1 1 2 1", "10 1 1 1 1", "unused-material 4:1+1"},
        {"format 0 data\n1 1 1 1\n2 1 1 1\n1 3 1 1\n1 1 5 1\n",
         "format 1 data\n1 1 1 1 0\n2 1 1 1 0\n1 3 1 1 0\n1 1 5 1 0\n", "ignored-temperatures 3:1+1 note 6:22"},
        {"1 0 \"steel\" 7.85e-6 5.92e6 3.23e6", "1 2 \"epoxy\" 0 0 1.16e-6 -90 -9000 3.4e6 0 0.0004 0.36",
         "missing-temperatures 3:1+1 note 6:22"},
        {"timestep 0.04", "timestep 0.09", "courant-limit 1:32+4 note note 4:1"},
        {"timestep 0.04", "timestep 0.08", ""},
        {"cellsize 0.5", "cellsize 5e-4", "courant-limit 1:33+4 note note 4:1"},
        {"cellsize 0.5", "cellsize 5e-5", "courant-limit 1:33+4"},
        // Outputs.
        {"output U ", "output ", "empty-output 19:40+6"},
        {"\"b.txt\"", "\"A.TXT\"", "shared-output-file 20:30+7 note 19:58"},
    };
    for (const auto& [what, with, told] : changes) {
        SCOPED_TRACE(with);
        EXPECT_NE(valid.find(what), std::string::npos) << what;
        const std::string text = std::string(what).empty() ? valid : support::Replaced(valid, what, with);
        EXPECT_EQ(Check(text), told);
    }
}

/// Rows beyond the marks that are kept, in a file of their own.
TEST(Warnings, FindRowsAgainAndEndAfterEnough) {
    constexpr int rows = 40000;
    std::string grid = "CUBES count " + std::to_string(rows) + " format 1 data\r\n";
    for (int i = 0; i < rows - 5; ++i) {
        grid += std::to_string(i % 200 + 1) + ' ' + std::to_string(i / 200 + 1) + "\t1 2 -1.5e1" +
                (i % 7 == 0 ? " " : "\r\n");
    }
    grid += "\r\n7 1 1 2.5\r\n";  // Without a blank before the temperature.
    for (int i = 0; i < 4; ++i) grid += "8 1 1 2 0\r\n";
    grid += "END END DAMPING count 1 data 9 1 2 2 1 END END";
    support::WriteFile("warned.cubes", grid);
    const std::size_t first = valid.find("CUBES");
    std::string text = valid.substr(0, first) + "include \"warned.cubes\"" + valid.substr(valid.find("\nACTUATOR"));
    text = support::Replaced(text, "1 0 \"steel\" 7.85e-6 5.92e6 3.23e6\n2 1 \"aluminium\" 2.7e-6 7.0e7 0.33",
                             "2 2 \"epoxy\" 0 0 1.16e-6 -90 -9000 3.4e6 0 0.0004 0.36");
    std::string points;
    for (int i = 1; i < 29998; ++i) points += i % 7000 == 6999 ? "1 1 300\n" : "1 1 1\n";
    text = support::Replaced(text, "count 3 data", "count 30000 data\n" + points);
    EXPECT_EQ(Check(text, 2),
              "duplicate-cell 34284:1+5 in 5:9 row 39996 note 7:1, duplicate-cell 34285:1+5 in 5:9 row 39997 note 8:1, "
              "duplicate-cell 34286:1+5 and 3 in 5:9 row 39998, "
              "outside-grid 7013:1+7 row 6999, outside-grid 14013:1+7 row 13999, "
              "outside-grid 21013:1+7 and 2 row 20999");
    // As many as are told of need no end.
    EXPECT_EQ(Check(support::Replaced(valid, "count 3 data", "count 4 data 1 1 9,"), 1), "outside-grid 21:23+5 row 1");
}

// What a bad row leaves open is not told, and neither is what seems to be unused then.
TEST(Warnings, KeepQuietAboutWhatErrorsLeaveOpen) {
    std::string text = support::Replaced(valid, "2 1 1 1\n", "2 1 x 1\n");
    EXPECT_EQ(Check(support::Replaced(text, "10 1 1 2 1", "9 1 1 1 1")),
              "error 122 8:5+1 row 2 note, duplicate-cell 12:35+5 row 2 note 12:22");
}

/// After the first error a check that ends there warns of nothing; where there is none it does.
TEST(Warnings, AreLeftOutOnRequest) {
    const std::string warned = support::Replaced(valid, "10 1 1 2 1", "9 1 1 1 1");
    const std::string wrong = support::Replaced(warned, "2 1 1 1\n", "2 1 x 1\n");
    CheckOptions options;
    const auto told = [&](const std::string& text) {
        return Told(CheckModel(support::WriteFile("warned.model", text), options));
    };
    options.firstOnly = true;
    EXPECT_EQ(told(warned), Check(warned));
    EXPECT_NE(told(warned), "");
    EXPECT_EQ(told(wrong), "error 122 8:5+1 row 2 note");
    options.warnings = false;
    EXPECT_EQ(told(warned), "");
}

TEST(Warnings, LeaveTheExampleAlone) {
    // Its temperatures are there for one of its materials.
    EXPECT_EQ(Told(CheckModel(ORVALO_EXAMPLES "/plate/plate.model")),
              "ignored-temperatures 9:3+1 note 3:12, ignored-temperatures 10:3+1 note 3:12, "
              "ignored-temperatures 12:3+1 note 3:12");
}

}  // namespace
}  // namespace orvalo
