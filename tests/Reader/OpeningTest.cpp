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
constexpr ReadOptions cubesOnly = {true, true, Lexer::defaultBufferSize};

/// Works in the scratch directory for as long as it lives.
class InScratchDirectory {
public:
    InScratchDirectory() { fs::current_path(ScratchDirectory()); }
    InScratchDirectory(const InScratchDirectory&) = delete;
    InScratchDirectory& operator=(const InScratchDirectory&) = delete;
    ~InScratchDirectory() { fs::current_path(before_); }

private:
    fs::path before_ = fs::current_path();
};

TEST(Opening, FindsTheMainFileByAnyPath) {
    const InScratchDirectory here;
    fs::create_directory("sub");
    WriteFile("main.model", "include \"part.model\"");
    WriteFile("part.model", grid);
    WriteFile("sub/Main.model", "include \"part.model\"");
    WriteFile("sub/part.model", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    WriteFile("m", grid);
    WriteFile("sub/m", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    const std::string dir = ScratchDirectory();
    const struct {
        std::string path;
        int x;
    } table[] = {
        {"main.model", 1},
        {"./main.model", 1},
        {"sub/../main.model", 1},
        {"none/../main.model", 1},
        {dir + "/main.model", 1},
        {'/' + dir + "/main.model", 1},
        {"m", 1},
        {"sub/m", 9},
        {"sub/Main.model", 9},
        {dir + "/sub/Main.model", 9},
        {dir + "/sub/m", 9},
    };
    for (const auto& [path, x] : table) {
        const Outcome outcome = ReadPath(path, cubesOnly);
        ASSERT_EQ(outcome.what, "") << path;
        EXPECT_EQ(outcome.model->cubes.GetCube(0)->x, x) << path;
    }
}

TEST(Opening, NamesTheFileThatCannotBeRead) {
    const InScratchDirectory here;
    fs::create_directory("sub");
    const std::string dir = ScratchDirectory();
    const std::string longest = std::string(258 - dir.size(), 'n');
    const struct {
        int code;
        std::string path;
        std::string what;
    } table[] = {
        // The path is completed by the rule for includes, which takes a path from the root for a relative one.
        {103, "none.model", "Unable to open '" + dir + "/none.model' input file."},
        {103, "sub/none", "Unable to open '" + dir + "/sub/sub/none' input file."},
        {103, "/none/x", "Unable to open '/none//none/x' input file."},
        {103, "//none/x", "Unable to open '//none/x' input file."},
        {103, "n", "Unable to open 'n' input file."},
        {103, "c:n", "Unable to open 'c:n' input file."},
        {103, "", "Unable to open '' input file."},
        {104, "sub", "Error in file \"sub\", line 1, column 1:\nUnable to read '" + dir + "/sub' input file."},
        // 259 bytes and a terminator are the most that a resolved path may have.
        {103, longest, "Unable to open '" + dir + '/' + longest + "' input file."},
        {175, longest + 'n', "Cannot resolve path to '" + longest + "n' input file."},
        {175, "x/" + std::string(5000, 'y'), "Cannot resolve path to '" + std::string(512, 'y') + "' input file."},
    };
    for (const auto& row : table) {
        const Outcome outcome = ReadPath(row.path, cubesOnly);
        EXPECT_EQ(outcome.code, row.code) << row.path;
        EXPECT_EQ(outcome.what, row.what);
        EXPECT_EQ(outcome.place.path, row.code == 104 ? dir + "/sub" : "") << row.path;
    }
}

TEST(Opening, IncludesAnywhereBetweenTokens) {
    WriteFile("count.inc", "= 1 format");
    WriteFile("rest.inc", "0 include \"data.inc\" END % no line end");
    WriteFile("data.inc", "data 1 2 3 4 END");
    const Outcome outcome = ReadText("CUBES count Include \"Count.inc\" include\"rest.inc\"", cubesOnly);
    EXPECT_EQ(outcome.what, "");
    EXPECT_EQ(outcome.model->cubes.GetCube(0)->z, 3);
}

struct IncludeRow {
    const char* main;
    const char* included;  // as inc.model
    const char* what;
    const char* file;
    const char* place;
    bool cubesOnly = false;
};

TEST(Opening, LocatesErrorsInIncludedFiles) {
    const IncludeRow table[] = {
        // Includes do not disturb the count of the file that they stand in.
        {"ANALYSIS include \"inc.model\" cellsize x", "timestep 1\n",
         "line 1, column 39:\nNumerical property value expected.", "m.model", "1:39/38"},
        {"ANALYSIS\ninclude \"inc.model\"\n", "cellsize\n0 ", "line 1, column 10:\nInvalid proverty value provided.",
         "inc.model", "2:1/9"},
        {"\r\n  include \"inc.model\"", "\r\n\tinclude \"m.model\"", "line 2, column 10:\nRecursive include found.",
         "inc.model", "2:10/11"},
        // A token must be whole before an include, and bulk rows never go on behind the end of their file.
        {"CUBES count 2 format 0 include \"inc.model\" 1 1 1 1 END END", "data 1 1 1 1\n",
         "line 1, column 43:\nNot enough cubes defined (1 missing)", "m.model", "1:44/43", true},
        {"include \"inc.model\"\r\n", "% nothing\n", "line 2, column 1:\nCUBES section not defined.", "m.model",
         "2:1/21", true},
    };
    for (const IncludeRow& row : table) {
        SCOPED_TRACE(row.main);
        WriteFile("inc.model", row.included);
        const Outcome outcome = ReadText(row.main, {row.cubesOnly, true, 1});
        EXPECT_EQ(outcome.what, "Error in file \"" + std::string(row.file) + "\", " + row.what);
        EXPECT_EQ(ToText(outcome.place), row.place);
        EXPECT_EQ(outcome.place.path, ScratchDirectory() + '/' + row.file);
    }
}

TEST(Opening, TakesPathsThatDifferInCaseForTheSame) {
    WriteFile("case.model", grid);
    EXPECT_EQ(ReadPath(WriteFile("Case.model", "include \"case.model\""), cubesOnly).what,
              "Error in file \"Case.model\", line 1, column 9:\nRecursive include found.");
}

TEST(Opening, NestsAThousandIncludes) {
    constexpr int depth = 1000;
    for (int i = 0; i < depth; ++i) {
        const std::string next = "n" + std::to_string(i + 1);
        WriteFile("n" + std::to_string(i), "% level\ninclude \"" + next + "\"\n");
    }
    WriteFile("n" + std::to_string(depth), grid + "#");
    EXPECT_EQ(ReadPath(ScratchDirectory() + "/n0", cubesOnly).what,
              "Error in file \"n1000\", line 1, column 46:\nInvalid character.");
    WriteFile("n" + std::to_string(depth), grid);
    EXPECT_EQ(ReadPath(ScratchDirectory() + "/n0", cubesOnly).what, "");
}

std::string WhatOf(Reader& reader, Model& model) {
    try {
        reader.Execute(&model, true);
    } catch (const Exception& failure) {
        return failure.what();
    }
    return {};
}

TEST(Opening, AReaderServesOneRead) {
    Reader reader(WriteFile("once.model", Sections("AMCXS")), false);
    const Reader unused(reader);
    Model model;
    EXPECT_EQ(WhatOf(reader, model), "");
    // The files of the first read stay listed; a failure closes them, but the sections stay read.
    EXPECT_EQ(WhatOf(reader, model), "Recursive include found.");
    EXPECT_EQ(reader.FailurePlace().path, "");
    EXPECT_EQ(WhatOf(reader, model),
              "Error in file \"once.model\", line 1, column 1:\nANALYSIS section already defined.");
    EXPECT_EQ(reader.FailurePlace().path, ScratchDirectory() + "/once.model");

    Reader copy(unused);
    Model second;
    EXPECT_EQ(WhatOf(copy, second), "");
    EXPECT_EQ(second.actuators.size(), 1U);
    copy = unused;
    Model third;
    EXPECT_EQ(WhatOf(copy, third), "");
}

TEST(Opening, CountsCubesAsTheyAreRead) {
    unsigned long long counter = 99;
    Reader reader(WriteFile("count.model", "CUBES count 5 format 0 data\n1 1 1 1\n2 1 1 1\n3 1 x"), true);
    reader.TraceCurrentCube(&counter);
    Model model;
    EXPECT_EQ(WhatOf(reader, model),
              "Error in file \"count.model\", line 1, column 24:\nInvalid Z coordinate value (or out of range).");
    EXPECT_EQ(counter, 2U);
    EXPECT_EQ(reader.FailureRow(), 3U);
}

}  // namespace
}  // namespace orvalo
