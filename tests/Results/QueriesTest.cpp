#include <climits>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

// Both formats hold rows for the cubes (2, -1, 0), (5, -1, 0), (5, -1, 3) and once more (2, -1, 0).
std::unique_ptr<Results> Sample(bool mat) {
    if (!mat) {
        return LoadBytes(
            "x\ty\tz\tf\tu\tv\n2\t65535\t0\t9\t1\t-1\n5\t65535\t0\t9\t2\t-2\n5\t65535\t3\t9\t3\t-"
            "3\n2\t65535\t0\t9\t4\t-4\n");
    }
    return LoadBytes(MatHeader() + Indices(4, {2, 5, 5, 2, -1, -1, -1, -1, 0, 0, 3, 0, 9, 9, 9, 9}).Bytes() +
                     Values(2, {1, 2, 3, 4, -1, -2, -3, -4}).Bytes());
}

/// The value, or the code of the error.
double ValueOrCode(const std::function<double()>& query, const char* file) {
    try {
        return query();
    } catch (const Exception& error) {
        EXPECT_EQ(error.file(), file);
        return error.code();
    }
}

class Queries : public testing::TestWithParam<bool> {};

TEST_P(Queries, CheckInOrder) {
    const auto results = Sample(GetParam());
    const char* const module = GetParam() ? "ResultsMat" : "ResultsTxt";
    const double def = 0.5;
    const std::tuple<unsigned int, int, int, int, double> cells[] = {
        {0, 5, -1, 0, 2},         {1, 5, -1, 3, -3},         {0, 2, -1, 0, 4},        {2, 5, -1, 0, 301},
        {2, 99, 99, 99, 301},     {UINT_MAX, 5, -1, 0, 301}, {0, 1, -1, 0, 302},      {0, 6, -1, 0, 302},
        {0, 6, 99, 99, 302},      {0, 5, -2, 0, 303},        {0, 5, 0, 0, 303},       {0, 5, 0, 99, 303},
        {0, 5, -1, -1, 304},      {0, 5, -1, 4, 304},        {0, 3, -1, 0, 305},      {0, 2, -1, 3, 305},
        {0, INT_MIN, -1, 0, 302}, {0, INT_MAX, -1, 0, 302},  {0, 5, INT_MIN, 0, 303}, {0, 5, INT_MAX, 0, 303},
        {0, 5, -1, INT_MIN, 304}, {0, 5, -1, INT_MAX, 304},  {0, 65541, -1, 0, 302},
    };
    for (const auto& cell : cells) {
        const auto& [col, x, y, z, expected] = cell;
        const auto checked = [&, c = col, cx = x, cy = y, cz = z] { return results->ExValueGet(c, cx, cy, cz); };
        EXPECT_EQ(ValueOrCode(checked, module), expected) << testing::PrintToString(cell);
        const bool fails = expected > 300;
        EXPECT_EQ(results->SafeValueGet(col, x, y, z, def), fails ? def : expected);
        EXPECT_TRUE(fails || results->ValueGet(col, x, y, z) == expected);
    }
    const std::tuple<unsigned int, unsigned int, double> rows[] = {{0, 0, 1},   {1, 3, -4},  {2, 0, 301},
                                                                   {0, 4, 300}, {2, 4, 300}, {0, UINT_MAX, 300}};
    for (const auto& [col, row, expected] : rows) {
        EXPECT_EQ(ValueOrCode([&, c = col, r = row] { return results->ExValueGet(c, r); }, module), expected);
        const bool fails = expected > 299;
        EXPECT_EQ(results->SafeValueGet(col, row, def), fails ? def : expected);
        EXPECT_TRUE(fails || results->ValueGet(col, row) == expected);
    }
    EXPECT_EQ(results->IndexGet(1, 2), -1);
    EXPECT_EQ(results->IndexGet(3, 3), 9);
}

TEST_P(Queries, MayComeFromManyThreads) {
    const auto results = Sample(GetParam());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i) {
                EXPECT_EQ(results->ExValueGet(0, 5, -1, 0) + results->ValueGet(1, 2U), -1);
                EXPECT_EQ(results->SafeValueGet(0, i, 5, 5, -1.0), -1);
                EXPECT_THROW(results->ExValueGet(7, 0U), Exception);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

/// Every entry of a column as its runs give it.
template <class Number>
std::vector<double> Gathered(const std::vector<ColumnRun<Number>>& runs) {
    std::vector<double> all;
    for (const auto& run : runs) {
        for (std::size_t i = 0; i < run.rows; ++i) all.push_back(run.data[i * run.stride]);
    }
    return all;
}

template <class Kind>
void ExpectRunsToHoldAllRows(const Kind& results, const char* module, std::size_t runs) {
    std::vector<double> values(results.RowCount());
    std::vector<double> indices(values);
    for (unsigned int row = 0; row < results.RowCount(); ++row) {
        values[row] = results.ValueGet(1, row);
        indices[row] = results.IndexGet(2, row);
    }
    EXPECT_EQ(results.ValueRuns(1).size(), runs);
    EXPECT_TRUE(Gathered(results.ValueRuns(1)) == values);
    EXPECT_TRUE(Gathered(results.IndexRuns(2)) == indices);
    EXPECT_EQ(ValueOrCode([&] { return results.ValueRuns(results.ValuesColCount()).size(); }, module), 301);
    EXPECT_EQ(ValueOrCode([&] { return results.IndexRuns(results.IndicesColCount()).size(); }, module), 301);
}

TEST(ColumnRuns, HoldAllRows) {
    ExpectRunsToHoldAllRows(dynamic_cast<const ResultsMat&>(*Sample(true)), "ResultsMat", 1);
    ExpectRunsToHoldAllRows(dynamic_cast<const ResultsTxt&>(*Sample(false)), "ResultsTxt", 1);
    std::string text = "x\ty\tz\tf\tu\tv\n";
    for (int i = 0; i < 150000; ++i) text += "1\t2\t" + std::to_string(i % 999) + "\t0\t0\t" + std::to_string(i) + "\n";
    ExpectRunsToHoldAllRows(dynamic_cast<const ResultsTxt&>(*LoadBytes(text)), "ResultsTxt", 3);
    EXPECT_TRUE(dynamic_cast<const ResultsTxt&>(*LoadBytes("u\n")).ValueRuns(0).empty());
    EXPECT_TRUE(dynamic_cast<const ResultsMat&>(*LoadBytes(MatHeader() + Values(1, {}).Bytes())).ValueRuns(0).empty());
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Queries, testing::Bool());

TEST(QueriesWithoutRows, Fail) {
    const std::pair<std::string, double> cases[] = {
        {"", 301},                 // No column.
        {"u\n1\n", 302},           // No index columns.
        {"x\ty\tz\tf\tu\n", 305},  // A box of one empty cell.
        {MatHeader(), 301},
        {MatHeader() + Values(1, {}).Bytes(), 305},
    };
    for (const auto& [bytes, byCell] : cases) {
        const auto results = LoadBytes(bytes);
        const char* const module = bytes.starts_with("MATLAB") ? "ResultsMat" : "ResultsTxt";
        EXPECT_EQ(ValueOrCode([&] { return results->ExValueGet(0, 0, 0, 0); }, module), byCell);
        EXPECT_EQ(results->SafeValueGet(0, 0, 0, 0, -1.0), -1);
        EXPECT_EQ(ValueOrCode([&] { return results->ExValueGet(0, results->RowCount()); }, module), 300);
    }
    EXPECT_EQ(LoadBytes("u\n1\n")->IndexGet(2, 5), 0);
}

TEST(QueriesByCell, FindEveryCellOfABoxWithHoles) {
    // A cell that has its leaf of the lookup for itself, cells that share leaves and cells far apart, with coordinates
    // over the whole 16-bit range.
    std::vector<short> x = {-32768};
    std::vector<short> y = {4};
    std::vector<short> z = {6};
    for (int i = -32768; i <= 32767; i += 13) {
        x.push_back(static_cast<short>(i));
        y.push_back(static_cast<short>(i / 13 % 5));
        z.push_back(static_cast<short>(i / 131 % 7));
    }
    std::vector<double> numbers;
    for (std::size_t i = 0; i < x.size(); ++i) numbers.push_back(static_cast<double>(i));
    std::vector<short> all = x;
    all.insert(all.end(), y.begin(), y.end());
    all.insert(all.end(), z.begin(), z.end());
    const auto results = LoadBytes(MatHeader() + Values(1, numbers).Bytes() + Indices(3, all).Bytes());
    for (std::size_t i = 0; i < x.size(); ++i) {
        ASSERT_EQ(results->ExValueGet(0, x[i], y[i], z[i]), numbers[i]);
        ASSERT_EQ(results->SafeValueGet(0, x[i] + 1, y[i], z[i], -1), -1);
        // At the same place of another leaf.
        ASSERT_EQ(results->SafeValueGet(0, x[i] + 64, y[i], z[i], -1), -1);
    }
}

}  // namespace
}  // namespace orvalo
