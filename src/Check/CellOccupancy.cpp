#include "Check/CellOccupancy.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "Check/CellFilter.h"

namespace orvalo {

namespace {

/// Which cells are looked at in one of several passes: those whose scattered number begins with the bits of `index`.
struct Share {
    std::uint64_t index = 0;
    unsigned int bits = 0;

    bool Has(std::uint64_t scattered) const { return bits == 0 || scattered >> (64 - bits) == index; }
    bool IsPastLast() const { return index >> bits != 0; }
    /// What was looked at before is then as many shares of half the size.
    void Halve() {
        index *= 2;
        ++bits;
    }
};

/// Counts a repeated cell and keeps it if its row is among the first.
void Keep(RepeatedCells& repeated, const RepeatedCell& cell, std::uint64_t most) {
    const auto earlier = [](const RepeatedCell& a, const RepeatedCell& b) { return a.row < b.row; };
    ++repeated.count;
    auto& cells = repeated.cells;
    if (cells.size() >= most && (most == 0 || cell.row > cells.back().row)) return;
    if (cells.size() == most) cells.pop_back();
    cells.insert(std::upper_bound(cells.begin(), cells.end(), cell, earlier), cell);
}

/// Finds repeated cells by two passes over a list for each share of its cells: one suspects some, which is sure where a
/// bit for every cell of the box fits the budget; the other one looks at these alone.
class RepeatSearch {
public:
    RepeatSearch(const CellList& list, const CellSurvey& survey, std::uint64_t most, std::size_t budget)
        : list_(list), most_(most), numbers_(budget / 4, scatter_) {
        const bool fits = survey.Volume() <= budget / 4 * 8;
        if (fits) bits_.emplace(survey.box);
        filter_.emplace(fits ? budget / 4 : budget / 2);
        while (!fits && list.count >> share_.bits > filter_->Room()) ++share_.bits;
    }

    RepeatedCells Run() {
        while (!share_.IsPastLast()) {
            if (SuspectSome()) {
                if (numbers_.Size() > 0) Confirm();
                ++share_.index;
            } else {
                share_.Halve();
            }
        }
        return std::move(repeated_);
    }

private:
    bool SuspectSome() {
        if (bits_) {
            bits_->Clear();
            return Suspect([this](CellKey key, std::uint64_t) { return bits_->Add(key); });
        }
        filter_->Clear(list_.count);
        return Suspect([this](CellKey, std::uint64_t scattered) { return filter_->Add(scattered); });
    }

    /// Gathers the cells of the share that the test has seen before; false if they are too many.
    template <class Test>
    bool Suspect(const Test& isThere) {
        numbers_.Clear();
        for (std::uint64_t row = 0; row < list_.count; ++row) {
            const CellKey key = list_.Key(row);
            const std::uint64_t scattered = scatter_(key);
            if (share_.Has(scattered) && isThere(key, scattered) && !numbers_.Add(key)) return false;
        }
        return true;
    }

    /// Finds the rows of the gathered cells.
    void Confirm() {
        filter_->Clear(numbers_.Size());
        numbers_.ForEachKey([this](CellKey key) { filter_->Add(scatter_(key)); });
        for (std::uint64_t row = 0; row < list_.count; ++row) {
            const CellKey key = list_.Key(row);
            if (!filter_->MayHave(scatter_(key))) continue;
            std::uint64_t* const firstRow = numbers_.Find(key);
            if (firstRow == nullptr) continue;
            if (*firstRow == 0) {
                *firstRow = row + 1;
            } else {
                Keep(repeated_, {row, *firstRow - 1, key}, most_);
            }
        }
    }

    const CellList& list_;
    std::uint64_t most_;
    Scatter scatter_;
    std::optional<CellBits> bits_;
    std::optional<CellFilter> filter_;
    CellNumbers numbers_;
    Share share_;
    RepeatedCells repeated_;
};

bool HasInOrder(const SurveyedCells& cells, const Point& point) {
    const bool byX = cells.survey.ascendsByX;
    const auto ordered = [byX](CellKey key) { return byX ? key : ByZ(key); };
    const CellKey wanted = ordered(KeyOf(point));
    std::uint64_t first = 0;
    for (std::uint64_t count = cells.list.count; count > 0;) {
        const std::uint64_t half = count / 2;
        if (ordered(cells.list.Key(first + half)) < wanted) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first < cells.list.count && ordered(cells.list.Key(first)) == wanted;
}

using Absent = std::function<void(std::size_t list, std::uint64_t index)>;

/// Calls `absent` for the points that `has` denies.
template <class Has>
void Ask(const std::vector<PointList>& points, const Has& has, const Absent& absent) {
    for (std::size_t list = 0; list < points.size(); ++list) {
        for (std::uint64_t i = 0; i < points[list].count; ++i) {
            if (!has(points[list].points[i])) absent(list, i);
        }
    }
}

/// Answers as many points at a time as fit the budget, in a pass over the cells for each time.
class PointSearch {
public:
    PointSearch(const std::vector<SurveyedCells>& cells, const std::vector<PointList>& points, std::size_t budget)
        : cells_(cells), points_(points), numbers_(budget / 4, scatter_), filter_(budget / 2) {}

    void Run(const Absent& absent) {
        for (Place from; from.list < points_.size();) {
            numbers_.Clear();
            const Place to = Walk(from, {points_.size(), 0}, [this](Place, CellKey key) { return numbers_.Add(key); });
            LookFor();
            Walk(from, to, [&](Place place, CellKey key) {
                if (*numbers_.Find(key) == 0) absent(place.list, place.index);
                return true;
            });
            from = to;
        }
    }

private:
    /// A point by its list and its index there.
    struct Place {
        std::size_t list = 0;
        std::uint64_t index = 0;
    };

    /// Visits points from one place to another, or to the first one that `visit` refuses, and gives that place.
    template <class Visit>
    Place Walk(Place from, Place to, const Visit& visit) const {
        for (Place at = from; at.list < points_.size(); at = {at.list + 1, 0}) {
            for (; at.index < points_[at.list].count; ++at.index) {
                if (at.list == to.list && at.index == to.index) return at;
                if (!visit(at, KeyOf(points_[at.list].points[at.index]))) return at;
            }
        }
        return {points_.size(), 0};
    }

    /// Marks the points that are cells.
    void LookFor() {
        filter_.Clear(numbers_.Size());
        numbers_.ForEachKey([this](CellKey key) { filter_.Add(scatter_(key)); });
        for (const SurveyedCells& cells : cells_) {
            for (std::uint64_t row = 0; row < cells.list.count; ++row) {
                const CellKey key = cells.list.Key(row);
                if (!filter_.MayHave(scatter_(key))) continue;
                if (std::uint64_t* const found = numbers_.Find(key)) *found = 1;
            }
        }
    }

    const std::vector<SurveyedCells>& cells_;
    const std::vector<PointList>& points_;
    Scatter scatter_;
    CellNumbers numbers_;
    CellFilter filter_;
};

}  // namespace

RepeatedCells FindRepeated(const CellList& list, const CellSurvey& survey, std::uint64_t most, std::size_t budget) {
    if (survey.Ascends()) return {};
    return RepeatSearch(list, survey, most, budget).Run();
}

void FindAbsent(const std::vector<SurveyedCells>& cells, const std::vector<PointList>& points, const Absent& absent,
                std::size_t budget) {
    constexpr std::uint64_t few = 4096;
    std::uint64_t asked = 0;
    for (const PointList& list : points) asked += list.count;
    if (asked == 0) return;
    Bounds box;
    bool inOrder = true;
    for (const SurveyedCells& some : cells) {
        box = Union(box, some.survey.box);
        inOrder = inOrder && some.survey.Ascends();
    }
    const bool fits = VolumeOf(box) <= budget * 6;
    if (inOrder && (asked <= few || !fits)) {
        const auto has = [&](const Point& point) {
            return std::any_of(cells.begin(), cells.end(),
                               [&](const SurveyedCells& some) { return HasInOrder(some, point); });
        };
        Ask(points, has, absent);
    } else if (asked > few && fits) {
        CellBits bits(box);
        for (const SurveyedCells& some : cells) {
            for (std::uint64_t row = 0; row < some.list.count; ++row) bits.Add(some.list.Key(row));
        }
        Ask(
            points, [&](const Point& point) { return bits.Has(point); }, absent);
    } else {
        PointSearch(cells, points, budget).Run(absent);
    }
}

}  // namespace orvalo
