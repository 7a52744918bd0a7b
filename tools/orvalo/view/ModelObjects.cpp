#include "ModelObjects.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "ModelMarks.h"
#include "ModelNames.h"
#include "ModelSummary.h"

namespace {

using Json = nlohmann::ordered_json;

Json CellJson(const orvalo::Point& cell) {
    return {cell.x, cell.y, cell.z};
}

std::string ExcitationText(const ModelSummary::Excitation& excitation) {
    return fmt::format("{} samples, {:.6g} us, from {:.6g} us", excitation.samples, excitation.duration,
                       excitation.start);
}

std::string SignalText(const orvalo::Actuator& actuator) {
    if (actuator.tableId > 0) return fmt::format("table {}", actuator.tableId);
    const orvalo::Actuator::Definition& signal = actuator.definition;
    return fmt::format("{} {}, frequency {:.6g} kHz, duration {:.6g} us, phase {:.6g}, envelope {}",
                       TypeName(signal.type), WaveformName(signal.waveform), signal.frequency, signal.duration,
                       signal.phase, EnvelopeName(signal.envelope));
}

std::string FileText(const orvalo::FileProperties& file) {
    return fmt::format("file {}, {}, {}, {}", file.fileName, FileFormatName(file.fileFormat),
                       NotationName(file.notation), WriteModeName(file.writeMode));
}

Json Object(const std::string& name, Json cell, const std::vector<std::string>& facts) {
    return {{"name", name}, {"cell", std::move(cell)}, {"facts", facts}};
}

template <class Number>
std::string_view BytesOf(const std::vector<Number>& numbers) {
    return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(Number)};
}

/// Samples of tables, each table once.
class SampleBlocks {
public:
    explicit SampleBlocks(PageBlocks& blocks) : blocks_(blocks) {}

    Json Signal(std::string name, const orvalo::Table& table, double start, double step) {
        const std::size_t shown = std::min(table.count, maxSamples);
        if (shown < table.count) name += fmt::format(" (first {} samples)", shown);
        auto [place, fresh] = known_.try_emplace(table.data, 0);
        if (fresh) {
            std::vector<float> samples(shown);
            for (std::size_t i = 0; i < shown; ++i) samples[i] = static_cast<float>(table.Get(i));
            place->second = blocks_.Add(BytesOf(samples));
        }
        return {{"name", name}, {"start", start}, {"step", step}, {"block", place->second}};
    }

private:
    static constexpr std::size_t maxSamples = std::size_t{1} << 18U;

    PageBlocks& blocks_;
    std::map<const void*, std::size_t> known_;
};

}  // namespace

Json PageMarks(const orvalo::Model& model) {
    constexpr const char* kinds[] = {"actuator", "piezo", "sensor"};
    Json marks = Json::array();
    std::vector<ModelMark> all = MarksOf(model);
    // Drawn in this order, so what there is most of comes first.
    std::stable_partition(all.begin(), all.end(),
                          [](const ModelMark& m) { return m.kind == ModelMark::Kind::piezoPoint; });
    for (const ModelMark& mark : all) {
        marks.push_back(
            {{"kind", kinds[static_cast<int>(mark.kind)]}, {"cell", CellJson(mark.cell)}, {"name", mark.name}});
    }
    return marks;
}

Json PageObjects(const orvalo::Model& model) {
    const ModelSummary summary = Summarize(model, false);
    Json objects = Json::array();
    const std::vector<ModelMark> marks = MarksOf(model);
    for (std::size_t i = 0; i < model.actuators.size(); ++i) {
        const orvalo::Actuator& actuator = model.actuators[i];
        objects.push_back(Object(
            marks[i].name, CellJson(marks[i].cell),
            {SignalText(actuator), ExcitationText(summary.actuators[i]),
             fmt::format("amplitude {:.6g}, factors {:.6g}, {:.6g}, {:.6g}, processing {}", actuator.amplitude,
                         actuator.factorU, actuator.factorV, actuator.factorW, ProcessingName(actuator.invert))}));
    }
    for (std::size_t i = 0; i < model.piezos.size(); ++i) {
        const orvalo::Piezo& piezo = *model.piezos[i];
        objects.push_back(Object(
            fmt::format("piezo {}: {}", piezo.shared.id, MethodName(piezo.method)), CellJson(piezo.shared.position),
            {fmt::format("axis {} {} {}, {} points, {} tables", piezo.direction.x, piezo.direction.y, piezo.direction.z,
                         piezo.data.Cells().size(), piezo.tables.size()),
             fmt::format("{}, amplitude {:.6g}", ExcitationText(summary.piezos[i]), piezo.amplitude)}));
    }
    for (const auto& [id, sensor] : model.sensors) {
        objects.push_back(Object(fmt::format("sensor {}: {}", id, sensor.output), CellJson(sensor.shared.position),
                                 {FileText(sensor.file)}));
    }
    for (const auto& [id, dump] : model.dumps) {
        objects.push_back(Object(fmt::format("dump {}: {}", id, dump.output), nullptr, {FileText(dump.file)}));
    }
    for (const auto& [id, set] : model.sets) {
        objects.push_back(
            Object(fmt::format("set {}", id), CellJson(*set->begin()), {fmt::format("{} points", set->count)}));
    }
    return objects;
}

Json PageSets(const orvalo::Model& model, PageBlocks& blocks) {
    constexpr std::size_t maxPoints = 100'000;
    Json sets = Json::array();
    for (const auto& [id, set] : model.sets) {
        std::vector<short> coordinates;
        for (const orvalo::Point& point : *set) {
            if (coordinates.size() == 3 * maxPoints) break;
            coordinates.insert(coordinates.end(), {point.x, point.y, point.z});
        }
        sets.push_back({{"name", fmt::format("set {}", id)}, {"block", blocks.Add(BytesOf(coordinates))}});
    }
    return sets;
}

Json PageSignals(const orvalo::Model& model, PageBlocks& blocks) {
    SampleBlocks samples(blocks);
    Json signals = Json::array();
    const ModelSummary summary = Summarize(model, false);
    for (std::size_t i = 0; i < model.actuators.size(); ++i) {
        const orvalo::Actuator& actuator = model.actuators[i];
        if (actuator.table == nullptr) continue;
        signals.push_back(samples.Signal(fmt::format("actuator {}", i + 1), *actuator.table, summary.actuators[i].start,
                                         summary.timeStep));
    }
    for (std::size_t i = 0; i < model.piezos.size(); ++i) {
        for (const auto& [id, table] : model.piezos[i]->tables) {
            signals.push_back(samples.Signal(fmt::format("piezo {} table {}", model.piezos[i]->shared.id, id), *table,
                                             summary.piezos[i].start, summary.timeStep));
        }
    }
    return signals;
}
