#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Reader/Reader.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;
namespace fs = std::filesystem;

const std::string grid = "CUBES count 1 format 0 data 1 2 3 4 END END\n";
const ReadSettings cubesOnly = {true, true, Lexer::defaultBufferSize};

#if !defined(_WIN32)

TEST(Opening, FindsTheMainFileOrNamesIt) {
    const fs::path before = fs::current_path();
    const std::string dir = ScratchDirectory();
    fs::current_path(dir);
    fs::create_directory("sub");
    WriteFile("main.model", "include \"part.model\"");
    WriteFile("part.model", grid);
    WriteFile("sub/Main.model", "include \"part.model\"");
    WriteFile("sub/part.model", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    WriteFile("sub\\part.model", Replaced(grid, "1 2 3 4", "7 2 3 4"));
    WriteFile("sub\\main", "include \"part.model\"");
    WriteFile("sub\\bad", "include \"none\" ");
    WriteFile("sub/m", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    fs::create_symlink("loop", "sub/loop");
    const std::string longest = std::string(258 - dir.size(), 'n');
    // A path, and where the cubes that are found begin, or the error.
    const std::pair<std::string, std::string> table[] = {
        {"main.model", "1"},
        {"sub/../main.model", "1"},
        {"none/../main.model", "1"},
        {dir + "/main.model", "1"},
        {'/' + dir + "/main.model", "1"},
        {"sub/m", "9"},
        // A backslash separates directories too.
        {"sub\\main", "7"},
        {"sub\\bad",
         "103 Error in file \"bad\", line 1, column 9:\nUnable to open '" + dir + "/sub\\none' input file."},
        {std::string("main.model\0x", 12), "103 Unable to open '" + dir + "/main.model' input file."},
        {"./sub/Main.model", "9"},
        {dir + "/sub/Main.model", "9"},
        // The path is completed by the rule for includes, which takes a path from the root for a relative one.
        {"none.model", "103 Unable to open '" + dir + "/none.model' input file."},
        {"sub/none", "103 Unable to open '" + dir + "/sub/sub/none' input file."},
        // Unless that cannot be known.
        {"sub/loop", "103 Unable to open '" + dir + "/sub/loop' input file."},
        {"/none/x", "103 Unable to open '/none//none/x' input file."},
        {"//none/x", "103 Unable to open '//none/x' input file."},
        {"n", "103 Unable to open 'n' input file."},
        {"c:n", "103 Unable to open 'c:n' input file."},
        {"", "103 Unable to open '' input file."},
        {"sub", "104 Error in file \"sub\", line 1, column 1:\nUnable to read '" + dir + "/sub' input file."},
        {"sub/", "104 Unable to read '" + dir + "/sub/' input file."},
        // 259 bytes and a terminator are the most that a resolved path may have.
        {longest, "103 Unable to open '" + dir + '/' + longest + "' input file."},
        {longest + 'n', "175 Cannot resolve path to '" + longest + "n' input file."},
        {"x/" + std::string(5000, 'y'), "175 Cannot resolve path to '" + std::string(512, 'y') + "' input file."},
    };
    for (const auto& [path, found] : table) {
        const Outcome outcome = ReadPath(path, cubesOnly);
        const std::string error = std::to_string(outcome.code) + ' ' + outcome.what;
        EXPECT_EQ(outcome.code == 0 ? std::to_string(outcome.model->bounds.minX) : error, found) << path;
        const bool located = outcome.code == 104 || found.find("Error") != std::string::npos;
        EXPECT_EQ(outcome.place.path, located ? dir + '/' + path : "") << path;
    }
    fs::current_path(before);
}

#endif

TEST(Opening, IncludesAnywhereBetweenTokens) {
    WriteFile("count.inc", "= 1 format");
    WriteFile("rest.inc", "0 include \"data.inc\" END % no line end");
    WriteFile("data.inc", "data 1 2 3 4 END");
    const Outcome outcome = ReadText("CUBES count Include \"Count.inc\" include\"rest.inc\"", cubesOnly);
    EXPECT_EQ(Fingerprint(outcome), "bounds 1 1 2 2 3 3\ncube 1 2 3 4\n");
}

/// The main file, the one that it includes, the error, the file where it is, and the place there.
TEST(Opening, LocatesErrorsInIncludedFiles) {
    for (const auto& row : Rows(R"(
// Includes do not disturb the count of the file that they stand in.
ANALYSIS include "inc.model" cellsize x | timestep 1/
  | line 1, column 39:/Numerical property value expected. | m.model | 1:39+38
ANALYSIS/include "inc.model"/ | cellsize/0  | line 1, column 10:/Invalid proverty value provided. | inc.model | 2:1+9
\  include "inc.model" | \,include "m.model" | line 2, column 10:/Recursive include found. | inc.model | 2:10+11
// Paths are the same in whatever case.
include "inc.model" | \include "Inc.model" | line 2, column 9:/Recursive include found. | inc.model | 2:9+10
// A token must be whole before an include, and bulk rows never go on past the end of their file.
CUBES count 2 format 0 include "inc.model" 1 1 1 1 END END | data 1 1 1 1/
  | line 1, column 43:/Not enough cubes defined (1 missing) | m.model | 1:44+43
include "inc.model"\ | % nothing/ | line 2, column 1:/ANALYSIS section not defined. | m.model | 2:1+21
)")) {
        WriteFile("inc.model", row[1]);
        const Outcome outcome = ReadText(row[0], {row[0][0] == 'C', true, 1});
        EXPECT_EQ(outcome.what, "Error in file \"" + row[3] + "\", " + row[2]);
        EXPECT_EQ(outcome.place.path, ScratchDirectory() + '/' + row[3]);
        EXPECT_EQ(ToText(outcome.place), row[4]);
    }
}

std::string WhatOf(Reader& reader) {
    Model model;
    try {
        reader.Execute(&model, true);
    } catch (const Exception& failure) {
        return failure.what();
    }
    return std::to_string(model.actuators.size());
}

TEST(Opening, AReaderServesOneRead) {
    Reader reader(WriteFile("once.model", Sections("AMCXS")), false);
    const Reader unused(reader);
    EXPECT_EQ(unused.FailureRow(), 0U);
    EXPECT_EQ(WhatOf(reader), "1");
    // The files of the first read stay listed; a failure closes them, but the sections stay read.
    EXPECT_EQ(WhatOf(reader), "Recursive include found.");
    EXPECT_EQ(reader.FailurePlace().path, "");
    EXPECT_EQ(WhatOf(reader), "Error in file \"once.model\", line 1, column 1:\nANALYSIS section already defined.");
    EXPECT_EQ(reader.FailurePlace().path, ScratchDirectory() + "/once.model");
    Reader copy(unused);
    EXPECT_EQ(WhatOf(copy), "1");
    copy = unused;
    EXPECT_EQ(WhatOf(copy), "1");
}

TEST(Opening, CountsAndBoundsCubesAsTheyAreRead) {
    // The third row is damaged; the second is none of the common kind, or its temperature is not.
    for (const char* const text :
         {"0 data\n1 1 1 1\n2 1 1 1\n3 1 x", "0 data\n1 1 1 1\n4294967298 1 1 1\n3 1 x",
          "1 data\n1 1 1 1 0\n4294967298 1 1 1 0\n3 1 x", "1 data\n1 1 1 1 0\n2 1 1 1 + 0\n3 1 x"}) {
        unsigned long long counter = 99;
        Model model;
        Reader reader(WriteFile("count.model", std::string("CUBES count 3 format ") + text), true);
        reader.TraceCurrentCube(&counter);
        EXPECT_THROW(reader.Execute(&model, true), Exception);
        EXPECT_EQ(counter, 2U) << text;
        EXPECT_EQ(reader.FailureRow(), 3U);
        EXPECT_EQ(Replaced(ShowGrid(model), "at 0\n", ""),
                  "bounds 1 2 1 1 1 1\ncube 1 1 1 1\ncube 2 1 1 1\ncube 0 0 0 0\n");
    }
}

}  // namespace
}  // namespace orvalo
