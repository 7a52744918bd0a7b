#include <cmath>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>
#if !defined(_WIN32)
#include <sys/resource.h>
#endif

#include "Reader/ModelAccess.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;

TEST(ModelClasses, BoundsWidenAndMove) {
    const auto shown = [](const Bounds& b) {
        return Line("", b.minX, b.maxX, b.minY, b.maxY, b.minZ, b.maxZ, b.norm.x, b.norm.y, b.norm.z);
    };
    Bounds b;
    b.Update(-5, 7, 0);
    b.Update(10, -3, 2);
    b.Inflate(2);
    EXPECT_EQ(shown(b), " -7 12 -5 9 -2 4 0 0 0\n");
    b.Normalize();
    EXPECT_EQ(shown(b), " 0 19 0 14 0 6 7 5 2\n");
    // Shorts wrap.
    Bounds limits;
    limits.Update(-32768, 32767, 0);
    limits.Inflate(1);
    EXPECT_EQ(shown(limits), " 32767 -32767 32766 -32768 -1 1 0 0 0\n");
    limits.minX = -32768;
    limits.Normalize();
    EXPECT_EQ(limits.norm.x, -32768);
    EXPECT_EQ(limits.maxX, 1);
}

TEST(ModelClasses, MaterialsDependOnTemperature) {
    Material steel;
    steel.SetFormat1(7850, 2.1e11, 0.3);
    EXPECT_EQ(steel.mu, 2.1e11 / 2.6);
    EXPECT_DOUBLE_EQ(steel.vp, std::sqrt(2.1e11 * 0.7 / (0.4 * 1.3 * 7850)));
    EXPECT_EQ(steel.vs, std::sqrt(steel.mu / 7850));
    EXPECT_DOUBLE_EQ(steel.lambda, (steel.vp * steel.vp - 2 * steel.vs * steel.vs) * 7850);

    Material warm("warm");
    warm.SetFormat2({0.5, 1, 7630}, {0, 0, 2.1e11}, {0, 0, 0.3});
    const Material at20(warm, 20.0);  // Density 0.5*400 + 20 + 7630.
    EXPECT_TRUE(warm.temperatureDependent && !at20.temperatureDependent);
    EXPECT_EQ(Line(at20.name, at20.density, at20.vp, at20.lambda), Line("", 7850, steel.vp, steel.lambda));
}

TEST(ModelClasses, WarningsNameMaterialsOfTheFile) {
    MaterialRepository materials;
    EXPECT_EQ(materials[0].lambda, (343000.0 * 343000.0 - 343000.0 * 2 * 343000.0) * 1.225e-6);
    materials.Add(Material("a"), 7);
    materials.Add(Material("b"), 3);
    for (const int i : {0, 1, 2}) materials.SetTempMissing(i);
    for (const int i : {0, 1}) materials.SetTempIgnored(i);
    materials.PrepareWarnings(-0.25001);
    const std::string missing = "Missing temperatures for temperature-dependent definition of material #";
    EXPECT_EQ(materials.GetWarnings(),
              missing + "7. Room temperature (-0.3 deg C) assumed.\n" + missing +
                  "3. Room temperature (-0.3 deg C) assumed.\n"
                  "Temperatures of cells made of material #7 were ignored, because material is defined as "
                  "non-temperature dependent.\n");
    materials.ClearTemperaturesInfo();
    materials.PrepareWarnings(25);
    EXPECT_STREQ(materials.GetWarnings(), "");
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
    Table table = *source->tables.at(-1);
    Set set = *source->sets.at(1);
    static_cast<void>(Table(std::move(table)));
    static_cast<void>(Set(std::move(set)));
    const PiezoData points = source->piezos.at(0)->data;
    EXPECT_EQ(table.data, assigned.tables.at(-1)->data);
    EXPECT_EQ(set.points, assigned.sets.at(1)->points);
    EXPECT_EQ(points.Cells(), assigned.piezos.at(0)->data.Cells());
    const std::string shown = ShowBulk(*source);
    source.reset();
    copy.cubes.Free();
    copy.cubes.Free();
    EXPECT_EQ(copy.cubes.CubesPtr(), nullptr);
    EXPECT_EQ(copy.cubes.CubesCount() + copy.cubes.DampingCubesCount(), 0U);
    copy = Model();
    EXPECT_EQ(ShowBulk(assigned), shown);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(assigned.cubes.GetCube(1)),
              assigned.cubes.CubesPtr() + Cubes::recordSize);
    EXPECT_EQ(assigned.actuators[0].table->Get(0), table.Get(0));
    assigned = Model();
    // The sanitizer sees whether the numbers are still there.
    EXPECT_TRUE(std::isfinite(table.Get(0)));
    EXPECT_EQ(set.points[0].z, 9);
    EXPECT_EQ(points.Cells().begin()->second->x, 0);
}

#if !defined(_WIN32)

TEST(ModelClasses, SayWhichBufferDoesNotFit) {
    constexpr std::size_t gigabyte = 1'000'000'000;
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    if (pages > gigabyte) GTEST_SKIP() << "the address sanitizer keeps memory of its own";
    const std::tuple<int, const char*, int, const char*, const char*> table[] = {
        {102, "Cubes", 56, "AM", "CUBES count 200e6 format 0 data"},
        {102, "Cubes", 56, "AM", "CUBES count 9e18 format 0 data"},
        {102, "Cubes", 62, "AM", "CUBES count 100e6 format 1 data"},
        // One more than 32 bits hold.
        {102, "Cubes", 56, "AM", "CUBES count 4294967297 format 0 data"},
        {102, "Cubes", 71, "AMC", "DAMPING count 4294967297 data"},
        {102, "Table", 23, "AMC",
         "ACTUATOR shape point position 1 1 1 input definition method force type fullpulse waveform sine envelope none "
         "frequency 1 duration 429496729.7 phase 0 END SENSOR id 1 shape point position 1 1 1 output u filename \"s\" "
         "END"},
        {102, "Cubes", 71, "AMC", "DAMPING count 100e6 data"},
        {102, "Table", 23, "AMC", "TABLE id 1 count 2147483647 data"},
        {102, "Set", 14, "AMC", "SET id 1 count 4294967295 data"},
        // 720 MB of points, in a buffer of twice that.
        {102, "Set", 14, "AMC", "SET id 1 count 120e6 data"},
        {127, "PiezoData", 35, "AMC", "PIEZO count 2 data 1 1 i 1 1 i"},
    };
    rlimit before{};
    getrlimit(RLIMIT_AS, &before);
    const rlimit limited{pages * 4096 + gigabyte, before.rlim_max};
    setrlimit(RLIMIT_AS, &limited);
    for (const auto& [code, file, line, sections, text] : table) {
        const Outcome outcome = ReadText(Sections(sections) + text);
        EXPECT_EQ(Line(outcome.file, outcome.line, outcome.code), Line(file, line, code)) << text;
    }
    // A count is kept though its buffer failed, and survives Free.
    Cubes cubes;
    Table samples;
    ModelAccess::Allocate(samples, true);
    samples.count = gigabyte;
    EXPECT_THROW(ModelAccess::AllocCubes(cubes, gigabyte, true), Exception);
    EXPECT_THROW(ModelAccess::AllocDampingCubes(cubes, gigabyte), Exception);
    EXPECT_THROW(ModelAccess::Allocate(samples, false), Exception);
    EXPECT_EQ(samples.data, nullptr);
    setrlimit(RLIMIT_AS, &before);
    cubes.Free();
    EXPECT_EQ(cubes.CubesCount() + cubes.DampingCubesCount(), 2 * gigabyte);
}

#endif

}  // namespace
}  // namespace orvalo
