#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Reader/Reader.h>

#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;
namespace fs = std::filesystem;

const std::string grid = "CUBES count 1 format 0 data 1 2 3 4 END END\n";
constexpr ReadSettings cubesOnly = {true, true, Lexer::defaultBufferSize};

TEST(Opening, FindsTheMainFileOrNamesIt) {
    const fs::path before = fs::current_path();
    const std::string dir = ScratchDirectory();
    fs::current_path(dir);
    fs::create_directory("sub");
    WriteFile("main.model", "include \"part.model\"");
    WriteFile("part.model", grid);
    WriteFile("sub/Main.model", "include \"part.model\"");
    WriteFile("sub/part.model", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    WriteFile("sub/m", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    const std::string longest = std::string(258 - dir.size(), 'n');
    const struct {
        std::string path;
        int code;
        std::string found;  // the bounds of the cubes, or the message
    } table[] = {
        {"main.model", 0, "1"},
        {"sub/../main.model", 0, "1"},
        {"none/../main.model", 0, "1"},
        {dir + "/main.model", 0, "1"},
        {'/' + dir + "/main.model", 0, "1"},
        {"sub/m", 0, "9"},
        {"./sub/Main.model", 0, "9"},
        {dir + "/sub/Main.model", 0, "9"},
        // The path is completed by the rule for includes, which takes a path from the root for a relative one.
        {"none.model", 103, "Unable to open '" + dir + "/none.model' input file."},
        {"sub/none", 103, "Unable to open '" + dir + "/sub/sub/none' input file."},
        {"/none/x", 103, "Unable to open '/none//none/x' input file."},
        {"//none/x", 103, "Unable to open '//none/x' input file."},
        {"n", 103, "Unable to open 'n' input file."},
        {"c:n", 103, "Unable to open 'c:n' input file."},
        {"", 103, "Unable to open '' input file."},
        {"sub", 104, "Error in file \"sub\", line 1, column 1:\nUnable to read '" + dir + "/sub' input file."},
        {"sub/", 104, "Unable to read '" + dir + "/sub/' input file."},
        // 259 bytes and a terminator are the most that a resolved path may have.
        {longest, 103, "Unable to open '" + dir + '/' + longest + "' input file."},
        {longest + 'n', 175, "Cannot resolve path to '" + longest + "n' input file."},
        {"x/" + std::string(5000, 'y'), 175, "Cannot resolve path to '" + std::string(512, 'y') + "' input file."},
    };
    for (const auto& row : table) {
        const Outcome outcome = ReadPath(row.path, cubesOnly);
        EXPECT_EQ(outcome.code, row.code) << row.path;
        EXPECT_EQ(outcome.code == 0 ? std::to_string(outcome.model->bounds.minX) : outcome.what, row.found);
        EXPECT_EQ(outcome.place.path, row.code == 104 ? dir + '/' + row.path : "") << row.path;
    }
    fs::current_path(before);
}

TEST(Opening, IncludesAnywhereBetweenTokens) {
    WriteFile("count.inc", "= 1 format");
    WriteFile("rest.inc", "0 include \"data.inc\" END % no line end");
    WriteFile("data.inc", "data 1 2 3 4 END");
    const Outcome outcome = ReadText("CUBES count Include \"Count.inc\" include\"rest.inc\"", cubesOnly);
    EXPECT_EQ(Fingerprint(outcome), "bounds 1 1 2 2 3 3\ncube 1 2 3 4\n");
}

TEST(Opening, LocatesErrorsInIncludedFiles) {
    const struct {
        const char* main;
        const char* included;  // as inc.model
        const char* what;
        const char* file;
        const char* place;
        bool cubesOnly = false;
    } table[] = {
        // Includes do not disturb the count of the file that they stand in.
        {"ANALYSIS include \"inc.model\" cellsize x", "timestep 1\n",
         "line 1, column 39:\nNumerical property value expected.", "m.model", "1:39/38"},
        {"ANALYSIS\ninclude \"inc.model\"\n", "cellsize\n0 ", "line 1, column 10:\nInvalid proverty value provided.",
         "inc.model", "2:1/9"},
        {"\r\n  include \"inc.model\"", "\r\n\tinclude \"m.model\"", "line 2, column 10:\nRecursive include found.",
         "inc.model", "2:10/11"},
        // Paths are the same in whatever case.
        {"include \"inc.model\"", "\r\ninclude \"Inc.model\"", "line 2, column 9:\nRecursive include found.",
         "inc.model", "2:9/10"},
        // A token must be whole before an include, and bulk rows never go on behind the end of their file.
        {"CUBES count 2 format 0 include \"inc.model\" 1 1 1 1 END END", "data 1 1 1 1\n",
         "line 1, column 43:\nNot enough cubes defined (1 missing)", "m.model", "1:44/43", true},
        {"include \"inc.model\"\r\n", "% nothing\n", "line 2, column 1:\nCUBES section not defined.", "m.model",
         "2:1/21", true},
    };
    for (const auto& row : table) {
        WriteFile("inc.model", row.included);
        const Outcome outcome = ReadText(row.main, {row.cubesOnly, true, 1});
        EXPECT_EQ(outcome.what, "Error in file \"" + std::string(row.file) + "\", " + row.what);
        EXPECT_EQ(outcome.place.path + ' ' + ToText(outcome.place),
                  ScratchDirectory() + '/' + row.file + ' ' + row.place);
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
    unsigned long long counter = 99;
    Model model;
    Reader reader(WriteFile("count.model", "CUBES count 4 format 0 data\n1 1 1 1\n2 1 1 1\n3 1 x"), true);
    reader.TraceCurrentCube(&counter);
    EXPECT_THROW(reader.Execute(&model, true), Exception);
    EXPECT_EQ(counter, 2U);
    EXPECT_EQ(reader.FailureRow(), 3U);
    EXPECT_EQ(ShowGrid(model), "bounds 1 2 1 1 1 1\ncube 1 1 1 1\ncube 2 1 1 1\ncube 0 0 0 0\ncube 0 0 0 0\n");
}

}  // namespace
}  // namespace orvalo
