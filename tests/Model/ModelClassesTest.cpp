#include <algorithm>
#include <clocale>
#include <cmath>
#include <iterator>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Reader/ModelAccess.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

TEST(ModelClasses, BoundsWidenAndMove) {
    Bounds b;
    b.Update(-5, 7, 0);
    b.Update(10, -3, 2);
    b.Inflate(2);
    const auto shown = [](const Bounds& box) {
        std::string text;
        for (const int n : {box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ})
            text += std::to_string(n) + ' ';
        return text + std::to_string(box.norm.x) + ' ' + std::to_string(box.norm.y) + ' ' + std::to_string(box.norm.z);
    };
    EXPECT_EQ(shown(b), "-7 12 -5 9 -2 4 0 0 0");
    b.Normalize();
    EXPECT_EQ(shown(b), "0 19 0 14 0 6 7 5 2");
    b.Normalize();
    EXPECT_EQ(shown(b), "0 19 0 14 0 6 0 0 0");
    EXPECT_TRUE(b.defined && b.normalized);

    Bounds limits;
    limits.Update(-32768, 32767, 0);
    limits.Inflate(1);
    EXPECT_EQ(shown(limits), "32767 -32767 32766 -32768 -1 1 0 0 0");
    limits.minX = -32768;
    limits.Normalize();
    EXPECT_EQ(limits.norm.x, -32768);
    EXPECT_EQ(limits.maxX, 1);
}

TEST(ModelClasses, MaterialsDependOnTemperature) {
    Material steel;
    EXPECT_EQ(steel.name, "<unknown>");
    steel.SetFormat1(7850, 2.1e11, 0.3);
    EXPECT_EQ(steel.mu, 2.1e11 / 2.6);
    EXPECT_DOUBLE_EQ(steel.vp, std::sqrt(2.1e11 * 0.7 / (0.4 * 1.3 * 7850)));
    EXPECT_EQ(steel.vs, std::sqrt(steel.mu / 7850));
    EXPECT_DOUBLE_EQ(steel.lambda, (steel.vp * steel.vp - 2 * steel.vs * steel.vs) * 7850);

    Material warm("warm");
    warm.SetFormat2({0.5, 1, 7630}, {0, 0, 2.1e11}, {0, 0, 0.3});
    EXPECT_TRUE(warm.temperatureDependent);
    EXPECT_EQ(warm.vp, 0);
    const Material at20(warm, 20.0);  // Density 0.5*400 + 20 + 7630.
    EXPECT_EQ(at20.name, "");
    EXPECT_FALSE(at20.temperatureDependent);
    EXPECT_EQ(at20.density, 7850);
    EXPECT_EQ(at20.vp, steel.vp);
    EXPECT_EQ(at20.lambda, steel.lambda);
}

TEST(ModelClasses, WarningsAreTheSameInEveryLocale) {
    MaterialRepository materials;
    EXPECT_EQ(materials.Count(), 1U);
    EXPECT_TRUE(materials.MaterialDefined(0) && !materials.MaterialDefined(1));
    EXPECT_EQ(materials.Vec2File(1), -1);
    EXPECT_EQ(materials[0].lambda, (343000.0 * 343000.0 - 343000.0 * 2 * 343000.0) * 1.225e-6);
    materials.Add(Material("a"), 7);
    materials.Add(Material("b"), 3);
    for (const int i : {0, 1, 2}) materials.SetTempMissing(i);
    materials.SetTempIgnored(0);
    materials.SetTempIgnored(1);
    const std::string missing = "Missing temperatures for temperature-dependent definition of material #";
    const std::string expected = missing + "7. Room temperature (-0.3 deg C) assumed.\n" + missing +
                                 "3. Room temperature (-0.3 deg C) assumed.\n"
                                 "Temperatures of cells made of material #7 were ignored, because material is defined "
                                 "as non-temperature dependent.\n";
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        if (std::setlocale(LC_ALL, locale) == nullptr) continue;
        materials.PrepareWarnings(-0.25001);
        std::setlocale(LC_ALL, "C");
        EXPECT_EQ(materials.GetWarnings(), expected);
    }
    const MaterialRepository copy(materials);
    materials.ClearTemperaturesInfo();
    materials.PrepareWarnings(25);
    EXPECT_STREQ(materials.GetWarnings(), "");
    EXPECT_STREQ(MaterialRepository(copy).GetWarnings(), expected.c_str());
}

TEST(ModelClasses, CopiesShareAndOutliveTheirSource) {
    auto source = ReadText(Sections("AM") +
                           "CUBES count 2 format 1 data 1 2 3 1 20 4 5 6 1 30 END END\r\n"
                           "DAMPING count 1 data 1 1 1 1 0.5 END END SET id 1 count 1 data 7 8 9 END END\n" +
                           Sections("XPS"))
                      .model;
    Model copy(*source);
    copy = *&copy;
    Model assigned;
    assigned = copy;
    EXPECT_EQ(assigned.cubes.CubesPtr(), source->cubes.CubesPtr());
    EXPECT_EQ(assigned.cubes.TemperaturesPtr(), source->cubes.TemperaturesPtr());
    EXPECT_EQ(assigned.cubes.DampingCubesPtr(), source->cubes.DampingCubesPtr());
    EXPECT_EQ(assigned.tables.at(-1).get(), source->tables.at(-1).get());
    EXPECT_EQ(assigned.sets.at(1).get(), source->sets.at(1).get());
    EXPECT_EQ(assigned.piezos.at(0).get(), source->piezos.at(0).get());
    const Table table = *source->tables.at(-1);
    const Set set = *source->sets.at(1);
    const PiezoData points = source->piezos.at(0)->data;
    EXPECT_EQ(table.data, source->tables.at(-1)->data);
    EXPECT_EQ(set.points, source->sets.at(1)->points);
    source.reset();
    copy = Model();
    EXPECT_EQ(assigned.cubes.GetTemperature(1), 30);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(assigned.cubes.GetCube(1)), assigned.cubes.CubesPtr() + 7);
    EXPECT_EQ(assigned.actuators[0].table->Get(0), table.Get(0));
    assigned = Model();
    EXPECT_EQ(table.Get(50), table.Get(50));
    EXPECT_EQ(set.points[0].z, 9);
    EXPECT_EQ(points.Cells().begin()->second->x, 0);
}

TEST(ModelClasses, FreeReleasesOnce) {
    Cubes cubes;
    ModelAccess::AllocCubes(cubes, 3, true);
    EXPECT_EQ(cubes.DampingCubesPtr(), nullptr);
    const Cubes copy(cubes);
    cubes.Free();
    cubes.Free();
    EXPECT_EQ(cubes.CubesCount(), 0U);
    EXPECT_EQ(cubes.CubesPtr(), nullptr);
    EXPECT_EQ(copy.CubesCount(), 3U);
    EXPECT_EQ(copy.GetTemperature(2), 0);
    ModelAccess::AllocCubes(cubes, 0, false);
    EXPECT_EQ(cubes.CubesCount(), 0U);
}

#if defined(__has_feature)
constexpr bool addressSanitizer = __has_feature(address_sanitizer);
#elif defined(__SANITIZE_ADDRESS__)
constexpr bool addressSanitizer = true;
#else
constexpr bool addressSanitizer = false;
#endif

/// Keeps the process from taking more than 1 GB of address space beyond what it has.
class LimitedMemory {
public:
    LimitedMemory() {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &before_);
        rlimit limited = before_;
        limited.rlim_cur = pages * 4096 + 1000000000;
        setrlimit(RLIMIT_AS, &limited);
    }
    LimitedMemory(const LimitedMemory&) = delete;
    LimitedMemory& operator=(const LimitedMemory&) = delete;
    ~LimitedMemory() { setrlimit(RLIMIT_AS, &before_); }

private:
    rlimit before_{};
};

TEST(ModelClasses, SayWhichBufferDoesNotFit) {
    if (addressSanitizer) GTEST_SKIP() << "the address sanitizer keeps memory of its own";
    const struct {
        const char* text;
        const char* file;
        int line;
    } table[] = {
        {"CUBES count 200e6 format 0 data", "Cubes", 56},    {"CUBES count 9e18 format 0 data", "Cubes", 56},
        {"CUBES count 100e6 format 1 data", "Cubes", 62},    {"DAMPING count 100e6 data", "Cubes", 71},
        {"TABLE id 1 count 2147483647 data", "Table", 23},   {"SET id 1 count 4294967295 data", "Set", 14},
        {"PIEZO count 2 data 1 1 i 1 1 i", "PiezoData", 35},
    };
    const LimitedMemory limited;
    for (const auto& row : table) {
        const Outcome outcome = ReadText(Sections(row.text[0] == 'C' ? "AM" : "AMC") + row.text);
        EXPECT_EQ(outcome.file, row.file) << row.text;
        EXPECT_EQ(outcome.line, row.line) << row.text;
        EXPECT_EQ(outcome.code, row.line == 35 ? 127 : 102) << row.text;
    }
    // A count is kept though its buffer failed, and survives Free.
    Cubes cubes;
    EXPECT_THROW(ModelAccess::AllocCubes(cubes, 200000000, true), Exception);
    cubes.Free();
    EXPECT_EQ(cubes.CubesCount(), 200000000U);
}

}  // namespace
}  // namespace orvalo
