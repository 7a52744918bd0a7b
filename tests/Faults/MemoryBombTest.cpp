#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <iterator>
#include <limits>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Common/Buffers.h"
#include "Faults/Faults.h"
#include "Faults/Subjects.h"
#include "Support/RoundTrip.h"

namespace orvalo::faults {
namespace {

/// A figure of this process's memory in KiB.
long StatusKiB(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long value = 0;
        if (word == name + ':' && status >> value) return value;
    }
    return -1;
}

struct Cost {
    /// By how much the read raised the most that its process has committed.
    long committedKiB = -1;
    int code = -1;
};

/// What `read`, which returns 0 or the code of an error, costs a process of its own.
Cost Measure(const std::function<int()>& read) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        std::ofstream("/proc/self/clear_refs") << '5';  // Sets the peak back to what is committed now.
        const long before = StatusKiB("VmRSS");
        const int code = read();
        const Cost cost{StatusKiB("VmHWM") - before, code};
        ::_exit(::write(ends[1], &cost, sizeof cost) == sizeof cost ? 0 : 1);
    }
    Cost cost;
    ::close(ends[1]);
    EXPECT_EQ(::read(ends[0], &cost, sizeof cost), static_cast<ssize_t>(sizeof cost));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return cost;
}

int ReadResults(const std::string& path) {
    try {
        Load(path);
        return 0;
    } catch (const Exception& error) {
        return error.code();
    }
}

constexpr const char* head =
    "ANALYSIS cellsize 1 timestep 1 END MATERIALS 1 0 \"s\" 1 1 1 END CUBES count 1 format 0 data 1 1 1 1 END END\n";

std::string Repeated(std::size_t size, const std::function<std::string(std::size_t)>& part) {
    std::string text;
    for (std::size_t i = 1; text.size() < size; ++i) text += part(i);
    return text;
}

/// Rows that each lie in a part of a wide box of their own: `digits` of a row's number are its y, the rest its z.
std::string SparseText(std::size_t size) {
    return "x\ty\tz\tf\tu\n32767\t\t.5\n" + Repeated(size, [](std::size_t i) {
               return '\t' + std::to_string(i % 100) + '\t' + std::to_string(i / 100 % 1000) + ".5\n";
           });
}

std::string SparseMat(unsigned int rows) {
    std::vector<short> indices;
    for (const unsigned int column : {0U, 1U, 2U}) {
        for (unsigned int i = 0; i < rows; ++i) {
            const unsigned int coordinate = column == 0 ? (i == 0 ? 32767 : 0) : column == 1 ? i % 100 : i / 100;
            indices.push_back(static_cast<short>(coordinate));
        }
    }
    return MatHeader() + Values(1, std::vector<double>(rows)).Bytes() + Indices(3, indices).Bytes();
}

std::string ClaimingMat() {
    const MatMatrix values = Values(1, {0.5});
    constexpr std::uint32_t rows = 0x1FFFFFF0;
    return MatHeader() + values.Bytes({{1, 48 + 8 * rows}, {8, rows}, {11, 8 * rows}});
}

constexpr std::size_t small = 980;
constexpr std::size_t large = std::size_t{1} << 20U;

/// A name, a content, its kind ('m' a whole model, 'c' its cubes, 'r' results), and how reading ends: 0 or the code of
/// an error, which comes only once the file has had its effect.
using Bomb = std::tuple<const char*, std::string, char, int>;

std::vector<Bomb> Bombs() {
    const auto set = [](std::size_t i) { return "id " + std::to_string(i) + " data 1 1 1end\n"; };
    const auto emptySet = [](std::size_t i) { return "id " + std::to_string(i) + " data end\n"; };
    const std::string start = head;
    return {
        {"count of cubes", "CUBES count 5e8 format 1 data 1 1 1 1 1 END END", 'c', 0},
        {"repeated cubes",
         Repeated(small, [](std::size_t) { return "CUBES count 5e8 format 1 data 1 1 1 1 1 END END\n"; }), 'c', 0},
        {"repeated damping",
         start + Repeated(large, [](std::size_t) { return "DAMPING count 5e8 data 1 1 1 1 1 END END\n"; }), 'm', 143},
        {"count of a table", start + "TABLE id 1 count 2147483647 data 1 2 3", 'm', 118},
        {"counts of sets", start + "SET count 1e8 " + Repeated(small - start.size(), set), 'm', 178},
        {"many small sets", start + "SET count 340 " + Repeated(large, emptySet), 'm', 178},
        {"many tables",
         start + Repeated(large,
                          [](std::size_t i) { return "TABLE id " + std::to_string(i) + " count 1 data 1 END END\n"; }),
         'm', 143},
        {"points of a patch",
         start + "PIEZO count 9e18 data " +
             Repeated(large,
                      [](std::size_t i) {
                          const std::string x = std::to_string(i % 9999);
                          return x + ' ' + std::to_string(i / 9999) + " t " + std::to_string(3 * i) + ' ' +
                                 std::to_string(3 * i + 1) + ' ' + std::to_string(3 * i + 2) + '\n';
                      }),
         'm', 120},
        {"long keyword", std::string(large, 'a'), 'm', 132},
        {"long number", start + "SET id " + std::string(large, '1') + " END", 'm', 113},
        {"sparse text", SparseText(small), 'r', 0},
        {"large sparse text", SparseText(large), 'r', 0},
        {"many columns", Repeated(65000, [](std::size_t) { return "u\t"; }) + "u\n1\n", 'r', 308},
        {"sparse MAT-file", SparseMat(30), 'r', 0},
        {"large sparse MAT-file", SparseMat(100000), 'r', 0},
        {"claimed size", ClaimingMat(), 'r', 201},
    };
}

/// What a file may make a process commit.
long AllowedKiB(std::size_t size) {
    constexpr long fixedKiB = 64L << 10U;
    return size <= 1024 ? fixedKiB : fixedKiB + static_cast<long>(size / 4);
}

void ExpectCost(const std::string& name, const Cost& cost, int code, std::size_t size) {
    std::cout << name << ": " << size << " bytes commit " << cost.committedKiB << " KiB\n";
    EXPECT_EQ(cost.code, code) << name;
    EXPECT_GE(cost.committedKiB, 0) << name;
    EXPECT_LE(cost.committedKiB, AllowedKiB(size)) << name;
}

TEST(MemoryBombs, CommitNoMoreThanPromised) {
    for (const auto& [name, content, kind, code] : Bombs()) {
        const std::string path = support::WriteFile("bomb", content);
        const Cost cost = Measure([&path, asked = kind] {
            if (asked == 'r') return ReadResults(path);
            return support::ReadPath(path, {asked == 'c', true, Lexer::defaultBufferSize}).code;
        });
        ExpectCost(name, cost, code, content.size());
    }
}

/// Where all pages are large, one point of a list would otherwise commit 2 MiB.
TEST(MemoryBombs, ClaimedCountsTakeNoLargePages) {
    const std::string content = head + Repeated(87000, [](std::size_t i) {
                                    return "SET id " + std::to_string(i) + " count 524288 data 1 1 1 END END\n";
                                });
    const std::string path = support::WriteFile("bomb", content);
    largePages = true;
    const Cost cost = Measure([&] { return support::ReadPath(path).code; });
    largePages = false;
    ExpectCost("large pages", cost, 143, content.size());
}

TEST(MemoryOfWrites, IsBounded) {
    constexpr unsigned int rows = 400'000;
    std::string grid;
    for (unsigned int i = 0; i < rows; ++i) grid += std::to_string(i % 100) + " 7 " + std::to_string(i / 100) + " 1\n";
    const std::string sections = support::Sections("AMXWTS");
    const std::string cubes = "CUBES count " + std::to_string(rows) + " format 0 data\n" + grid + "END END ";
    const Model model = ReadModel(
        support::WriteFile("large.model", support::Replaced(sections, "ACTUATOR shape point position 1 1 1 input def",
                                                            cubes + "ACTUATOR shape point position 1 1 1 input def")));
    // Rows and columns that take no memory of their own.
    const short zero = 0;
    const double third = 1.0 / 3;
    const double one = 1;
    ResultsView rowsOfOne;
    rowsOfOne.rows = rows;
    rowsOfOne.indices.assign(3, {&zero, 0});
    rowsOfOne.values.assign(3, {&third, 0});
    ResultsView wide;
    wide.rows = 300;
    wide.values.assign(32767, {&one, 0});
    wide.valueNames.resize(wide.values.size());
    const auto text = Load(support::WriteFile("large.txt", SmallText(30'000)));
    const std::string path = support::ScratchDirectory() + "/large.written";
    const std::function<void()> writes[] = {[&] { WriteModel(model, path, support::Overwriting("large.cubes")); },
                                            [&] { WriteResultsTxt(rowsOfOne, path, support::Overwriting()); },
                                            [&] { WriteResultsTxt(wide, path, support::Overwriting()); },
                                            [&] { WriteResultsTxt(*text, path, support::Overwriting()); },
                                            [&] { WriteResultsMat(rowsOfOne, path, support::Overwriting()); },
                                            [&] { WriteResultsMat(*text, path, support::Overwriting()); }};
    for (const auto& write : writes) {
        const Cost cost = Measure([&] { return write(), 0; });
        EXPECT_EQ(cost.code, 0);
        EXPECT_LE(cost.committedKiB, 4096);
        EXPECT_TRUE(std::filesystem::remove(path));
    }
}

TEST(MemoryBombs, AThousandNestedIncludes) {
    const auto name = [](int i) { return "nested" + std::to_string(i); };
    std::size_t size = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string content = "include \"" + name(i + 1) + "\"\n";
        support::WriteFile(name(i), content);
        size += content.size();
    }
    support::WriteFile(name(1000), "");
    const std::string path = support::ScratchDirectory() + '/' + name(0);
    // Each is read to its end and closed before the next is opened, and nothing defined.
    const auto read = [&path] {
        const rlimit few{16, 16};
        return setrlimit(RLIMIT_NOFILE, &few) == 0 ? support::ReadPath(path).code : -1;
    };
    ExpectCost("nested includes", Measure(read), 136, size);
}

/// Mappings of this process.
long Mappings() {
    std::ifstream maps("/proc/self/maps");
    return std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
}

/// The system merges neighbouring mappings, and refuses to unmap what would split them beyond its limit.
TEST(ReleasedMemory, IsBackAfterHalfAMillionSetsInRandomOrder) {
    std::vector<int> ids(500000);
    std::iota(ids.begin(), ids.end(), 1);
    std::shuffle(ids.begin(), ids.end(), std::minstd_rand(1));
    std::string text = head;
    for (const int id : ids) text += "SET id " + std::to_string(id) + " count 342 data 1 1 1 END END\n";
    const std::string path = support::WriteFile("sets", text);
    const long mappings = Mappings();
    const Held before = held;
    for (int i = 0; i < 10; ++i) {
        const long residentKiB = StatusKiB("VmRSS");
        EXPECT_EQ(support::ReadPath(path).model->sets.size(), ids.size());
        ::malloc_trim(0);  // What the C library keeps of the small blocks is its own affair.
        EXPECT_LE(StatusKiB("VmRSS"), residentKiB + 1024);
        EXPECT_LE(Mappings(), mappings);
    }
    EXPECT_EQ(held, before);
}

/// What could not be unmapped holds no memory, and is unmapped with the next buffer.
TEST(ReleasedMemory, IsNotLostWhereUnmappingFails) {
    constexpr std::size_t size = std::size_t{16} << 20U;
    for (const auto allocate : {AllocateZeroed, AllocateToFill}) {
        const long mappings = held.mappings;
        const long residentKiB = StatusKiB("VmRSS");
        Series series{1, true};
        for (int i = 0; i < 2; ++i) {
            const auto buffer = allocate(size, 1);
            std::fill_n(buffer.get(), size, static_cast<unsigned char>(1));
            unmapping = &series;
        }
        unmapping = nullptr;
        EXPECT_EQ(held.mappings, mappings + 2);
        EXPECT_LE(StatusKiB("VmRSS"), residentKiB + 1024);
        allocate(size, 1);
        EXPECT_EQ(held.mappings, mappings);
    }
}

/// Of buffers that share a mapping each gives back its own pages, and none is handed out with what another one held.
TEST(ReleasedMemory, IsGivenBackBufferByBuffer) {
    constexpr std::size_t size = std::size_t{1} << 19U;
    std::vector<std::shared_ptr<unsigned char[]>> buffers;
    const long residentKiB = StatusKiB("VmRSS");
    for (int i = 0; i < 100; ++i) {
        buffers.push_back(AllocateZeroed(size, 1));
        EXPECT_EQ(std::count(buffers.back().get(), buffers.back().get() + size, 0), size);
        std::fill_n(buffers.back().get(), size, static_cast<unsigned char>(i + 1));
        if (i % 10 != 9) buffers.erase(buffers.end() - 1);
    }
    // Ten of half a MiB, and what the program itself came to touch meanwhile. All of them would be 50 MiB.
    EXPECT_LE(StatusKiB("VmRSS"), residentKiB + 8 * 1024);
    for (std::size_t i = 0; i < 10; ++i) {
        const auto value = static_cast<unsigned char>(10 * i + 10);
        EXPECT_EQ(std::count(buffers[i].get(), buffers[i].get() + size, value), size);
    }
}

TEST(ReleasedMemory, SizesNeverWrap) {
    constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();
    for (const auto& [count, size] : {std::pair{largest, std::size_t{1}},
                                      {largest / 8 + 2, std::size_t{8}},
                                      {std::size_t{1} << 61U, std::size_t{8}},
                                      {largest / 2, std::size_t{1}}}) {
        EXPECT_EQ(AllocateZeroed(count, size), nullptr);
        EXPECT_EQ(AllocateToFill(count, size), nullptr);
    }
}

}  // namespace
}  // namespace orvalo::faults
