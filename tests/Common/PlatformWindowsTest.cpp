#if defined(_WIN32)

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <windows.h>

#include "Common/Buffers.h"
#include "Common/Platform.h"
#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

using namespace support;
namespace fs = std::filesystem;

const std::string grid = "CUBES count 1 format 0 data 1 2 3 4 END END\n";

TEST(Windows, OpensPathsAsTheSystemResolvesThem) {
    const fs::path before = fs::current_path();
    const std::string dir = Replaced(ScratchDirectory(), "/", "\\");
    fs::current_path(dir);
    fs::create_directory("sub");
    const std::string umlauts = "\xC3\xA4\xC3\xB6\xC3\xBC.model";
    const std::string japanese = "\xE5\x9C\xB0\xE9\x9C\x87\xE6\xB3\xA2.model";
    for (const std::string& name : {std::string("main.model"), std::string("sub/main.model"), umlauts, japanese}) {
        WriteFile(name, "include \"part.model\"");
    }
    WriteFile("part.model", grid);
    WriteFile("sub/part.model", Replaced(grid, "1 2 3 4", "9 2 3 4"));
    const std::string drive = dir.substr(0, 2);
    const std::string longest = std::string(300, 'n');
    // A path, and where the cubes that are found begin, or the error.
    const std::pair<std::string, std::string> table[] = {
        {"main.model", "1"},
        {"MAIN.model", "1"},
        {dir + "\\main.model", "1"},
        {ScratchDirectory() + "/main.model", "1"},
        {"\\\\?\\" + dir + "\\main.model", "1"},
        {"\\\\?\\" + dir + "\\sub\\main.model", "9"},
        {"sub\\main.model", "9"},
        {"sub/main.model", "9"},
        {".\\sub\\..\\main.model", "1"},
        // From the root of the current drive, and from the current directory of a drive.
        {dir.substr(2) + "\\main.model", "1"},
        {drive + "main.model", "1"},
        {umlauts, "1"},
        {dir + '\\' + japanese, "1"},
        {std::string("main.model\0x", 12), "103 Unable to open '{dir}/main.model' input file."},
        {"none.model", "103 Unable to open '{dir}/none.model' input file."},
        {dir + "\\none\\x", "103 Unable to open '{dir}/none/x' input file."},
        {"\\\\nowhere\\none\\x", "103 Unable to open '//nowhere/none/x' input file."},
        {"NUL", "103 Unable to open '//./NUL' input file."},
        {"con.txt", "103 Unable to open '//./con' input file."},
        {"sub", "104 Error in file \"sub\", line 1, column 1:\nUnable to read '{dir}/sub' input file."},
        {longest, "175 Cannot resolve path to '" + longest + "' input file."},
    };
    for (const auto& [path, found] : table) {
        const support::Outcome outcome = ReadPath(path, {true, true, Lexer::defaultBufferSize});
        const std::string error = std::to_string(outcome.code) + ' ' + outcome.what;
        EXPECT_EQ(outcome.code == 0 ? std::to_string(outcome.model->bounds.minX) : error,
                  Replaced(found, "{dir}", ScratchDirectory()))
            << path;
    }
    fs::current_path(before);
}

TEST(Windows, SaysWhatCanBeReadAndWhyNot) {
    const std::string name = "\xC3\xA4-of-results";
    const std::string path = WriteFile(name, "u\n1\n");
    EXPECT_EQ(orvalo::Outcome(path), "1x1+0 | ; 1");
    const std::vector<std::string> names = platform::FilesIn(ScratchDirectory());
    EXPECT_EQ(std::count(names.begin(), names.end(), name), 1);
    EXPECT_TRUE(platform::IsRegularFile(path));
    EXPECT_FALSE(platform::IsRegularFile(ScratchDirectory()) || platform::IsRegularFile("NUL"));
    EXPECT_EQ(platform::WhyUnreadable(path), "");
    EXPECT_EQ(platform::WhyUnreadable(path + 'x'), "No such file or directory");
    EXPECT_EQ(platform::WhyUnreadable(ScratchDirectory()), "Is a directory");
    // As a program does that is still writing it; then as one that lets nobody else look.
    const fs::path wide(std::u8string(path.begin(), path.end()));
    for (const DWORD share : {DWORD{FILE_SHARE_READ}, DWORD{0}}) {
        const HANDLE writer = ::CreateFileW(wide.c_str(), GENERIC_WRITE, share, nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(orvalo::Outcome(path),
                  share != 0 ? "1x1+0 | ; 1" : "200 ResultsReader: Unable to open 'PATH' results file.");
        EXPECT_EQ(platform::WhyUnreadable(path), share != 0 ? "" : "Another program keeps it to itself");
        ::CloseHandle(writer);
    }
    platform::InputFile file;
    EXPECT_TRUE(file.Open(path));
    EXPECT_TRUE(fs::remove(wide));
}

TEST(Windows, ReadsFromAnyPlaceAndGoesOnWhereItWas) {
    platform::InputFile file;
    ASSERT_TRUE(file.Open(WriteFile("letters", "abcdefgh")));
    std::string text(8, '.');
    // Where reading goes on, or is to go on at an offset; how much is asked for; what is found.
    const std::tuple<std::optional<std::uint64_t>, std::size_t, std::string> table[] = {
        {std::nullopt, 2, "ab"},  {5, 2, "fg"}, {std::nullopt, 3, "cde"}, {7, 8, "h"}, {9, 8, ""},
        {std::nullopt, 8, "fgh"},
    };
    for (const auto& [offset, size, found] : table) {
        const auto got = offset ? file.ReadAt(*offset, text.data(), size) : file.Read(text.data(), size);
        EXPECT_EQ(text.substr(0, got.value_or(0)), found);
    }
    EXPECT_EQ(file.Place(), 8U);
    EXPECT_TRUE(file.Seek(3));
    EXPECT_EQ(file.Read(text.data(), 1), 1U);
    EXPECT_EQ(text[0], 'd');
    EXPECT_FALSE(file.Open(ScratchDirectory() + "/none") || file.Read(text.data(), 1));
    EXPECT_GE(platform::ProcessorCount(), 1U);
}

std::size_t Committed(const unsigned char* from, std::size_t size) {
    MEMORY_BASIC_INFORMATION part;
    std::size_t committed = 0;
    for (std::size_t at = 0; at < size; at += part.RegionSize) {
        if (::VirtualQuery(from + at, &part, sizeof part) == 0) break;
        if (part.State == MEM_COMMIT) committed += std::min(part.RegionSize, size - at);
    }
    return committed;
}

TEST(Windows, CommitsPagesAsTheyAreTouched) {
    // More than the machine has.
    const auto model = ReadText("CUBES count 1099511627776 format 1 data 1 2 3 4 20.5 END", {true}).model;
    const std::size_t size = model->cubes.CubesCount() * Cubes::recordSize;
    EXPECT_EQ(size, std::size_t{7} << 40U);
    EXPECT_LE(Committed(model->cubes.CubesPtr(), size), std::size_t{4} << 20U);
    EXPECT_EQ(model->cubes.CubeAt(0).z, 3);
    EXPECT_EQ(model->cubes.CubeAt(std::size_t{1} << 39U).z, 0);

    constexpr std::size_t buffer = std::size_t{64} << 20U;
    for (const auto& bytes : {AllocateZeroed(buffer, 1), AllocateToFill(buffer, 1)}) {
        for (std::size_t at = 1; at < buffer; at += std::size_t{16} << 20U) bytes[at] = 1;
        EXPECT_LE(Committed(bytes.get(), buffer), std::size_t{9} << 20U);
        EXPECT_EQ(std::count(bytes.get(), bytes.get() + buffer, 1), 4);
    }
    // The system itself writes into pages that nobody has touched.
    const std::size_t rows = std::size_t{1} << 18U;
    const std::string values = Values(1, std::vector<double>(rows, 0.5)).Bytes();
    const auto results = LoadBytes(MatHeader() + values + Indices(3, std::vector<short>(3 * rows)).Bytes());
    EXPECT_EQ(results->ValueGet(0, static_cast<unsigned int>(rows) - 1), 0.5);
    // Any other fault is none of the library's.
    EXPECT_DEATH(*reinterpret_cast<volatile char*>(16) = 1, "");
}

TEST(Windows, SizesNeverWrap) {
    EXPECT_EQ(ReadText("CUBES count 9e18 format 0 data 1 2 3 4 END", {true}).code, 102);
    EXPECT_EQ(AllocateZeroed(std::size_t{1} << 61U, 8), nullptr);
}

}  // namespace
}  // namespace orvalo

#endif
