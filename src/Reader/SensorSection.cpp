#include "Reader/OutputSection.h"
#include "Reader/PointShape.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

static_assert(HasWords(sensorComponents));

void ReadComponents(ReaderCore& core, Sensor& sensor) {
    sensor.output.clear();
    for (;; core.NextToken()) {
        const auto row = core.FindWord(sensorComponents, module::OutputReader, ReaderMessages::SensorOutputExpected);
        if (!row) return;
        sensor.output += sensorComponents[*row].codes;
    }
}

constexpr Property<Sensor> properties[] = {
    {"end", "END", Takes::Nothing},
    {"enabled", "Enabled", Takes::Switch},
    idProperty<Sensor>,
    {"shape", "Shape", Takes::Value, always, [](ReaderCore& core, Sensor&) { CheckPointShape(core); }},
    {"position", "Position", Takes::Value, always,
     [](ReaderCore& core, Sensor& sensor) { sensor.shared.position = core.ReadCoordinates(); }},
    {"output", "Output", Takes::Words, always, ReadComponents},
    fileNameProperty<Sensor>,
    writeModeProperty<Sensor>,
    notationProperty<Sensor>,
    fileFormatProperty<Sensor>,
};
static_assert(IsComplete(properties));

}  // namespace

WordList SensorWords() {
    return properties;
}

void ReadSensorSection(ReaderCore& core, const ModelReading& reading) {
    ReadOutput(core, properties, reading.model.sensors, ReaderMessages::SensorIDReused);
}

}  // namespace orvalo
