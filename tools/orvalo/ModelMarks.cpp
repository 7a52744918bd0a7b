#include "ModelMarks.h"

#include <cstddef>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "ModelNames.h"

namespace {

orvalo::Point Moved(const orvalo::Point& from, int dx, int dy, int dz) {
    return {static_cast<short>(from.x + dx), static_cast<short>(from.y + dy), static_cast<short>(from.z + dz)};
}

orvalo::Point PlaceOf(const orvalo::Piezo& piezo, const orvalo::PiezoData::Cell& point) {
    const orvalo::Point& from = piezo.shared.position;
    if (piezo.direction.x != 0) return Moved(from, 0, point.x, point.y);
    if (piezo.direction.y != 0) return Moved(from, point.x, 0, point.y);
    return Moved(from, point.x, point.y, 0);
}

std::string NameOf(int id, const orvalo::PiezoData::Cell& point) {
    const std::string tables = point.tableU == 0
                                   ? std::string("interpolated")
                                   : fmt::format("tables {} {} {}", point.tableU, point.tableV, point.tableW);
    return fmt::format("piezo {} point ({}, {}): {}", id, point.x, point.y, tables);
}

}  // namespace

std::vector<ModelMark> MarksOf(const orvalo::Model& model) {
    std::vector<ModelMark> marks;
    for (const orvalo::Actuator& actuator : model.actuators) {
        const int number = static_cast<int>(marks.size()) + 1;
        const std::string along = DirectionLetters(actuator);
        marks.push_back({ModelMark::Kind::actuator, actuator.shared.position, number,
                         fmt::format("actuator {}: {}{}", number, MethodName(actuator.method),
                                     along.empty() ? "" : " along " + along)});
    }
    for (const auto& piezo : model.piezos) {
        for (const auto& [key, point] : piezo->data.Cells()) {
            marks.push_back({ModelMark::Kind::piezoPoint, PlaceOf(*piezo, *point), piezo->shared.id,
                             NameOf(piezo->shared.id, *point)});
        }
    }
    for (const auto& [id, sensor] : model.sensors) {
        marks.push_back({ModelMark::Kind::sensor, sensor.shared.position, id,
                         fmt::format("sensor {}: {} to {}", id, sensor.output, sensor.file.fileName)});
    }
    return marks;
}
