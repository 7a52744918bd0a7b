#include "ModelChecks.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "Check.h"

namespace orvalo::fuzz {

namespace {

template <class Record>
bool Holds(const Bounds& bounds, const Record& cube) {
    return bounds.defined && cube.x >= bounds.minX && cube.x <= bounds.maxX && cube.y >= bounds.minY &&
           cube.y <= bounds.maxY && cube.z >= bounds.minZ && cube.z <= bounds.maxZ;
}

bool IsZero(const unsigned char* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] != 0) return false;
    }
    return true;
}

/// How many of the records hold a row: those after them stay zero, and no row has material 0.
template <class Record>
std::size_t CheckRecords(const unsigned char* bytes, RecordRange<Record> records, const Model& model, bool cubesOnly) {
    // A count that the file merely claims is address space that nobody should walk.
    constexpr std::size_t most = 4096;
    constexpr std::size_t size = Packing<Record>::size;
    const std::size_t shown = std::min(records.size(), most);
    std::size_t read = 0;
    for (; read < shown; ++read) {
        const Record cube = records[read];
        if (cube.material == 0) break;
        Check(cubesOnly || cube.material < model.materials.Count(), "a material is defined");
        Check(Holds(model.bounds, cube), "the bounds hold every cube");
        Check(cube.x >= 0 && cube.y >= 0 && cube.z >= 0, "coordinates of rows are not negative");
    }
    for (std::size_t i = read; i < shown; ++i) {
        Check(IsZero(bytes + i * size, size), "records without a row are zero");
    }
    return read;
}

/// Only a table generated with steps of infinite length is empty.
void CheckTables(const std::map<int, std::shared_ptr<Table>>& tables, bool doublePrecision, double timeStep) {
    for (const auto& [id, table] : tables) {
        Check(table != nullptr && table->id == id, "a table is filed by its ID");
        Check((table->count == 0) == (id < 0 && std::isinf(timeStep)), "a table has samples where there are steps");
        Check(table->doublePrecision == doublePrecision && table->elementSize == (doublePrecision ? 8 : 4),
              "a table has the precision asked for");
        Check(table->data != nullptr, "a table has its samples");
        Check(table->Doubles().size() + table->Floats().size() == table->count, "samples are of one type");
        if (table->count == 0) continue;
        // The sanitizer sees whether the last one is there.
        static_cast<void>(table->Get(0));
        static_cast<void>(table->Get(table->count - 1));
    }
}

void CheckRequired(const std::map<int, int>& required, const std::map<int, std::shared_ptr<Table>>& tables) {
    for (const auto& [id, found] : required) Check(found == 1 && tables.count(id) == 1, "a required table is defined");
}

void CheckText(std::string_view text) {
    for (const char c : text) Check(!(c >= 'A' && c <= 'Z') && c != '"' && c > ' ', "strings are folded");
}

void CheckActuator(const Actuator& actuator, const Model& model) {
    const auto found = model.tables.find(actuator.tableId);
    Check(found != model.tables.end() && actuator.table == found->second.get(), "an actuator has its table");
    Check(actuator.shared.id == -1 && actuator.start <= 0, "an actuator has no ID and a negated start");
    Check(actuator.input == ActuatorInputDefinition || (actuator.input == ActuatorInputWave && actuator.tableId > 0),
          "an actuator by wave names its table");
    Check(actuator.method == ActuatorMethodForce || actuator.method == ActuatorMethodAbsolute,
          "an actuator has a method");
}

void CheckPiezo(const Piezo& piezo, bool doublePrecision, double timeStep) {
    Check(piezo.shared.id >= 1 && piezo.start <= 0 && piezo.data.Count() >= 1, "a patch has an ID and points");
    Check(piezo.direction.x + piezo.direction.y + piezo.direction.z == 1, "a patch has an axis");
    CheckTables(piezo.tables, doublePrecision, timeStep);
    CheckRequired(piezo.usedTables, piezo.tables);
    for (const auto& [id, table] : piezo.tables) {
        Check(table->count == piezo.samplesCount, "the tables of a patch have one count");
    }
    Check(!piezo.tables.empty() || piezo.samplesCount == 0, "a patch without tables has no samples");
    for (const auto& [key, cell] : piezo.data.Cells()) {
        const unsigned int own = static_cast<unsigned int>(static_cast<unsigned short>(cell->y)) << 16U |
                                 static_cast<unsigned short>(cell->x);
        Check(key == own, "a point of a patch is filed by its position");
    }
}

template <class Output>
void CheckOutput(int id, const Output& output) {
    Check(id >= 1 && output.shared.id == id, "an output is filed by its ID");
    Check(output.file.fileFormat != FileFormatMat || output.file.writeMode != FileWriteModeAppend,
          "no MAT-file is appended to");
    CheckText(output.output);
    CheckText(output.file.fileName);
}

}  // namespace

void CheckModel(const Model& model, bool cubesOnly, bool doublePrecision) {
    const Cubes& cubes = model.cubes;
    Check(cubes.Records().size() == cubes.CubesCount() && cubes.DampingRecords().size() == cubes.DampingCubesCount(),
          "a count has its records");
    CheckRecords(cubes.CubesPtr(), cubes.Records(), model, cubesOnly);
    CheckRecords(cubes.DampingCubesPtr(), cubes.DampingRecords(), model, cubesOnly);
    Check(cubes.CubesCount() > 0, "a model has cubes");
    if (cubesOnly) {
        Check(model.actuators.empty() && model.tables.empty() && model.sets.empty() && model.piezos.empty() &&
                  model.sensors.empty() && model.dumps.empty() && model.materials.Count() == 1,
              "only cubes were read");
        return;
    }
    Check(!model.actuators.empty() || !model.piezos.empty(), "something excites the model");
    Check(!model.sensors.empty() || !model.dumps.empty(), "something is recorded");
    Check(model.cellSize > 0 && model.timeStep >= 0 && model.startTime >= 0 && model.roomTemperature >= -273.15,
          "the analysis is in its ranges");
    CheckTables(model.tables, doublePrecision, model.timeStep);
    CheckRequired(model.requiredTables, model.tables);
    for (const Actuator& actuator : model.actuators) CheckActuator(actuator, model);
    Check(model.piezos.size() <= 1, "a model has at most one patch");
    for (const auto& piezo : model.piezos) CheckPiezo(*piezo, doublePrecision, model.timeStep);
    for (const auto& [id, sensor] : model.sensors) CheckOutput(id, sensor);
    for (const auto& [id, dump] : model.dumps) CheckOutput(id, dump);
    for (int i = 1; i < static_cast<int>(model.materials.Count()); ++i) {
        CheckText(model.materials[i].name);
        const int fileIndex = model.materials.Vec2File(i);
        Check(fileIndex >= 1 && model.materials.File2Vec(fileIndex) == i, "a material is found by both its numbers");
    }
    for (const auto& [id, set] : model.sets) {
        Check(set->id == id && set->count >= 1 && set->points != nullptr, "a set is filed by its ID and not empty");
    }
}

}  // namespace orvalo::fuzz
