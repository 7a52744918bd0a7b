#include "ResultsComparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CellOrder.h"

namespace {

using Column = ResultsComparison::Column;

/// Numbers of the rows that are about the same, some at a time: fetching values takes a call each, and by columns the
/// memory of text results is gone through again and again.
class RowPairs {
public:
    static constexpr std::size_t max = 1024;

    bool Add(unsigned int a, unsigned int b) {
        a_[count_] = a;
        b_[count_] = b;
        return ++count_ == max;
    }
    void Clear() { count_ = 0; }
    std::size_t Count() const { return count_; }
    unsigned int A(std::size_t i) const { return a_[i]; }
    unsigned int B(std::size_t i) const { return b_[i]; }

private:
    std::array<unsigned int, max> a_{};
    std::array<unsigned int, max> b_{};
    std::size_t count_ = 0;
};

/// Whether the rows of both are about the same cubes in the same, ascending order.
bool SameAscendingCells(const ResultsTable& a, const ResultsTable& b) {
    if (a.Rows() != b.Rows()) return false;
    CellKey last = 0;
    for (unsigned int row = 0; row < a.Rows(); ++row) {
        const CellKey key = a.Key(row);
        if (key != b.Key(row) || (row > 0 && key <= last)) return false;
        last = key;
    }
    return true;
}

std::vector<CellEntry> Order(const ResultsTable& table) {
    return OrderCells(table.Rows(), [&](std::size_t row) { return table.Key(static_cast<unsigned int>(row)); });
}

class Comparer {
public:
    Comparer(const ResultsTable& a, const ResultsTable& b, const Tolerance& tolerance)
        : a_(a), b_(b), tolerance_(tolerance) {
        result_.byCube = a.HasCells() && b.HasCells();
        result_.coordinatesDiffer = a.HasCells() != b.HasCells() && a.Rows() > 0 && b.Rows() > 0;
        MatchColumns();
        squares_.resize(result_.columns.size());
        finite_.resize(result_.columns.size());
    }

    ResultsComparison Compare() {
        if (!result_.byCube || SameAscendingCells(a_, b_)) {
            CompareRows();
        } else {
            CompareCells();
        }
        ComparePairs();
        for (std::size_t i = 0; i < result_.columns.size(); ++i) {
            if (finite_[i] == 0) continue;
            result_.columns[i].rms = static_cast<double>(std::sqrt(squares_[i] / static_cast<Wide>(finite_[i])));
        }
        return std::move(result_);
    }

private:
    // Squares of doubles may be beyond doubles.
    using Wide = long double;

    void MatchColumns() {
        const bool byName = a_.Named() && b_.Named();
        std::vector<bool> taken(b_.Columns());
        for (unsigned int i = 0; i < a_.Columns(); ++i) {
            unsigned int j = byName ? 0 : i;
            while (byName && j < b_.Columns() && (taken[j] || b_.Name(j) != a_.Name(i))) ++j;
            if (j < b_.Columns()) {
                taken[j] = true;
                result_.columns.push_back({i, j, a_.Named() ? a_.Name(i) : b_.Name(j)});
            } else {
                result_.columnsOnlyA.push_back(a_.Name(i));
            }
        }
        for (unsigned int j = 0; j < b_.Columns(); ++j) {
            if (!taken[j]) result_.columnsOnlyB.push_back(b_.Name(j));
        }
    }

    void CompareRows() {
        const unsigned int common = std::min(a_.Rows(), b_.Rows());
        for (unsigned int row = 0; row < common; ++row) AddPair(row, row);
        for (unsigned int row = common; row < a_.Rows(); ++row) AddLone(result_.onlyA, row);
        for (unsigned int row = common; row < b_.Rows(); ++row) AddLone(result_.onlyB, row);
    }

    void CompareCells() {
        JoinCells(Order(a_), Order(b_), [&](const CellEntry* a, const CellEntry* b) {
            if (b == nullptr) {
                AddLone(result_.onlyA, static_cast<unsigned int>(a->index));
            } else if (a == nullptr) {
                AddLone(result_.onlyB, static_cast<unsigned int>(b->index));
            } else {
                AddPair(static_cast<unsigned int>(a->index), static_cast<unsigned int>(b->index));
            }
        });
    }

    static void AddLone(ResultsComparison::Lone& lone, unsigned int row) {
        if (lone.count++ < ResultsComparison::Lone::max) lone.rows.push_back(row);
    }

    void AddPair(unsigned int a, unsigned int b) {
        ++result_.common;
        if (pairs_.Add(a, b)) ComparePairs();
    }

    void ComparePairs() {
        const unsigned int indices = std::min(a_.Source().IndicesColCount(), b_.Source().IndicesColCount());
        for (std::size_t i = 0; i < pairs_.Count(); ++i) {
            bool differ = false;
            for (unsigned int col = 3; col < indices; ++col) {
                differ |= a_.Source().IndexGet(col, pairs_.A(i)) != b_.Source().IndexGet(col, pairs_.B(i));
            }
            result_.indicesDiffering += differ ? 1 : 0;
        }
        for (std::size_t i = 0; i < result_.columns.size(); ++i) ComparePairs(i);
        pairs_.Clear();
    }

    void ComparePairs(std::size_t number) {
        Column& column = result_.columns[number];
        Wide squares = 0;
        for (std::size_t i = 0; i < pairs_.Count(); ++i) {
            const double a = a_.Source().ValueGet(column.a, pairs_.A(i));
            const double b = b_.Source().ValueGet(column.b, pairs_.B(i));
            const bool finite = std::isfinite(a) && std::isfinite(b);
            finite_[number] += finite ? 1 : 0;
            if (a == b) continue;
            const bool differ = !tolerance_.Accepts(a, b);
            column.differing += differ ? 1 : 0;
            column.notFinite += differ && !finite ? 1 : 0;
            if (!finite) continue;
            const double distance = std::abs(a - b);
            squares += static_cast<Wide>(distance) * distance;
            const auto take = [&](std::optional<ResultsComparison::Extreme>& extreme, double measure) {
                if (!extreme || measure > extreme->distance) extreme = {measure, pairs_.A(i), pairs_.B(i), a, b};
            };
            take(column.absolute, distance);
            take(column.relative, distance / std::max(std::abs(a), std::abs(b)));
        }
        squares_[number] += squares;
    }

    const ResultsTable& a_;
    const ResultsTable& b_;
    const Tolerance& tolerance_;
    ResultsComparison result_;
    RowPairs pairs_;
    std::vector<Wide> squares_;
    std::vector<std::size_t> finite_;
};

}  // namespace

bool ResultsComparison::Equal() const {
    const bool columnsEqual =
        std::all_of(columns.begin(), columns.end(), [](const Column& column) { return column.differing == 0; });
    return columnsEqual && columnsOnlyA.empty() && columnsOnlyB.empty() && onlyA.count == 0 && onlyB.count == 0 &&
           indicesDiffering == 0 && !coordinatesDiffer;
}

ResultsComparison Compare(const ResultsTable& a, const ResultsTable& b, const Tolerance& tolerance) {
    return Comparer(a, b, tolerance).Compare();
}
