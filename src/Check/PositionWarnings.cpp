#include <algorithm>
#include <optional>

#include "Check/Warnings.h"

namespace orvalo {

namespace {

constexpr const char* outside = "outside-grid";
constexpr const char* withoutCube = "cell-without-cube";

/// What stands at a point of the grid.
struct Placed {
    const char* name;
    const PropertyRecord* position;
};

std::string Reach(const Bounds& box) {
    return "the grid, which reaches from " + Shown(Point{box.minX, box.minY, box.minZ}) + " to " +
           Shown(Point{box.maxX, box.maxY, box.maxZ}) + '.';
}

/// Tells of points that have no cell.
class PositionCheck {
public:
    explicit PositionCheck(Warnings& warnings) : warnings_(warnings) {
        for (const GridPart& part : warnings.grid) {
            cells_.push_back(part.cells);
            box_ = Union(box_, part.cells.survey.box);
        }
        for (const auto& [section, actuator] : warnings.Actuators()) Place("actuator", *section, actuator->shared);
        for (const SectionRecord* const section : warnings.Sections("piezo")) {
            // Along which axes the points of a patch run, the solver decides.
            if (!warnings.model.piezos.empty()) Place("patch", *section, warnings.model.piezos.front()->shared);
        }
        for (const SectionRecord* const section : warnings.Sections("sensor")) {
            const auto sensor = warnings.model.sensors.find(IdOf(*section));
            if (sensor != warnings.model.sensors.end()) Place("sensor", *section, sensor->second.shared);
        }
        lists_.push_back({points_.data(), points_.size()});
        for (const SectionRecord* const section : warnings.Sections("set")) {
            const auto set = warnings.model.sets.find(IdOf(*section));
            if (set == warnings.model.sets.end()) continue;
            sets_.push_back(section);
            lists_.push_back({set->second->points, std::min<std::uint64_t>(set->second->count, section->rowsRead)});
        }
    }

    void Run() {
        FindAbsent(cells_, lists_, [this](std::size_t list, std::uint64_t index) {
            const Point& point = lists_[list].points[index];
            if (list == 0) {
                Tell(placed_[static_cast<std::size_t>(index)], point);
            } else {
                if (list != inList_) BeginSet(list);
                TellOfRow(index, point);
            }
        });
        EndSet();
    }

private:
    void Place(const char* name, const SectionRecord& section, const SharedProperties& shared) {
        const PropertyRecord* const position = section.Find("position");
        if (position == nullptr) return;
        placed_.push_back({name, position});
        points_.push_back(shared.position);
    }

    void Tell(const Placed& placed, const Point& point) {
        const bool inside = Holds(box_, point);
        const std::string where = "The " + std::string(placed.name) + " stands at " + Shown(point) + ", ";
        warnings_.Add(inside ? withoutCube : outside, placed.position->valuePlace,
                      warnings_.ValueLength(*placed.position),
                      where + (inside ? "where there is no cube." : "outside of " + Reach(box_)));
    }

    void BeginSet(std::size_t list) {
        EndSet();
        inList_ = list;
        outside_.emplace(warnings_, outside, *sets_[list - 1], false);
        withoutCube_.emplace(warnings_, withoutCube, *sets_[list - 1], false);
    }

    void TellOfRow(std::uint64_t row, const Point& point) {
        if (Holds(box_, point)) {
            withoutCube_->Add(row, [&] { return "There is no cube at " + Shown(point) + '.'; });
        } else {
            outside_->Add(row, [&] { return "The point " + Shown(point) + " lies outside of " + Reach(box_); });
        }
    }

    void EndSet() {
        if (inList_ == 0) return;
        outside_->End();
        withoutCube_->End();
    }

    Warnings& warnings_;
    std::vector<SurveyedCells> cells_;
    Bounds box_;
    /// The points of the first list, and what stands there; the others are those of the sets.
    std::vector<Point> points_;
    std::vector<Placed> placed_;
    std::vector<PointList> lists_;
    std::vector<const SectionRecord*> sets_;
    std::size_t inList_ = 0;
    std::optional<RowWarnings> outside_;
    std::optional<RowWarnings> withoutCube_;
};

}  // namespace

void WarnOfPositions(Warnings& warnings) {
    if (warnings.gridIsWhole) PositionCheck(warnings).Run();
}

}  // namespace orvalo
