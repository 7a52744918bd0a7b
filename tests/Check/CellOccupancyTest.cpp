#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Check/CellOccupancy.h"

namespace orvalo {
namespace {

/// Packed records as a grid holds them, and their answers by plain containers.
struct Cells {
    explicit Cells(std::vector<Point> thePoints)
        : points(std::move(thePoints)), records(points.size() * cubeStride + 1) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            StoreCube(&records[i * cubeStride], KeyOf(points[i]) | std::uint64_t{i % 3 + 1} << 48U);
            const auto [first, added] = firstRows.emplace(KeyOf(points[i]), i);
            if (!added) repeated.push_back({i, first->second, KeyOf(points[i])});
        }
    }
    CellList List() const { return {records.data(), cubeStride, points.size()}; }

    std::vector<Point> points;
    std::vector<unsigned char> records;
    std::map<CellKey, std::uint64_t> firstRows;
    std::vector<RepeatedCell> repeated;
};

std::string Listed(const std::vector<RepeatedCell>& cells, std::size_t most) {
    std::string text;
    for (std::size_t i = 0; i < std::min(most, cells.size()); ++i) {
        text += std::to_string(cells[i].row) + " as " + std::to_string(cells[i].first) + " at " +
                std::to_string(cells[i].cell) + '\n';
    }
    return text;
}

struct Case {
    const char* name;
    std::size_t count;
    int side;
    /// The axis that runs fastest in cells that are in order, each once; 0 for no order.
    char order;
    std::size_t budget;
};

std::vector<Point> Random(const Case& test, std::mt19937& random) {
    std::uniform_int_distribution<int> coordinate(0, test.side - 1);
    const auto next = [&] { return static_cast<short>(coordinate(random)); };
    std::vector<Point> points;
    for (std::size_t i = 0; i < test.count; ++i) points.push_back({next(), next(), next()});
    // Some more than once, in a sparse box too.
    for (std::size_t i = 0; i < test.count / 50; ++i) points.push_back(points[random() % points.size()]);
    if (test.order == 0) return points;
    const auto key = [&](const Point& p) { return test.order == 'x' ? KeyOf(p) : ByZ(KeyOf(p)); };
    std::sort(points.begin(), points.end(), [&](const Point& a, const Point& b) { return key(a) < key(b); });
    const auto same = [&](const Point& a, const Point& b) { return key(a) == key(b); };
    points.erase(std::unique(points.begin(), points.end(), same), points.end());
    return points;
}

TEST(CellOccupancy, AgreesWithAPlainMap) {
    constexpr std::size_t most = 7;
    const Case cases[] = {
        {"dense", 20000, 30, 0, occupancyBudget},
        {"dense, a list of bits too large", 20000, 40, 0, 4096},
        {"sparse", 20000, 32768, 0, occupancyBudget},
        {"sparse, many passes", 20000, 32768, 0, 2048},
        {"mostly repeated", 5000, 8, 0, 1024},
        {"in order of x", 20000, 32768, 'x', 2048},
        {"in order of z", 20000, 40, 'z', occupancyBudget},
        {"one", 1, 1, 0, occupancyBudget},
    };
    std::mt19937 random(20240501);
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Cells cells(Random(test, random));
        const CellSurvey survey(cells.List());
        EXPECT_EQ(survey.Ascends(), test.order != 0 || cells.points.size() == 1);
        EXPECT_EQ(survey.materials.count(), std::min<std::size_t>(3, cells.points.size()));
        const RepeatedCells repeated = FindRepeated(cells.List(), survey, most, test.budget);
        EXPECT_EQ(repeated.count, cells.repeated.size());
        EXPECT_EQ(Listed(repeated.cells, most), Listed(cells.repeated, most));

        // Points of three lists, of which about half are cells of this list or of another one.
        const Cells others(Random({"", 100, test.side, 0, 0}, random));
        for (const std::size_t asked : {std::size_t{50}, std::size_t{6000}}) {
            std::vector<Point> points = Random({"", asked / 2, test.side, 0, 0}, random);
            for (std::size_t i = 0; i < asked / 2; ++i) {
                const auto& from = i % 5 == 0 ? others.points : cells.points;
                points.push_back(from[random() % from.size()]);
            }
            points.push_back({-3, 0, 32767});
            std::string wanted;
            for (std::size_t i = 0; i < points.size(); ++i) {
                const CellKey key = KeyOf(points[i]);
                if (cells.firstRows.count(key) + others.firstRows.count(key) == 0) wanted += std::to_string(i) + ' ';
            }
            const std::size_t half = points.size() / 2;
            std::string absent;
            FindAbsent(
                {{cells.List(), survey}, {others.List(), CellSurvey(others.List())}},
                {{points.data(), half}, {nullptr, 0}, {points.data() + half, points.size() - half}},
                [&](std::size_t list, std::uint64_t index) {
                    absent += std::to_string(index + (list == 2 ? half : 0)) + ' ';
                },
                test.budget);
            EXPECT_EQ(absent, wanted);
        }
    }
}

}  // namespace
}  // namespace orvalo
