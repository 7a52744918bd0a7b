#include "Reader/Properties.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr double absoluteZero = -273.15;
constexpr double secondsPerMicrosecond = 1e-6;

// Microseconds are multiplied, not divided: the sample counts of generated tables depend on the last bit.
double ReadSeconds(const ReaderCore& core) {
    return core.ExpectAtLeast(0.0) * secondsPerMicrosecond;
}

constexpr Property<Model> properties[] = {
    {"end", "END", Takes::Nothing},
    {"cellsize", "Cellsize", Takes::Value, always,
     [](ReaderCore& core, Model& model) { model.cellSize = core.ExpectGreaterThan(0.0); }},
    {"timestep", "Timestep", Takes::Value, always,
     [](ReaderCore& core, Model& model) { model.timeStep = ReadSeconds(core); }},
    {"starttime", "Starttime", Takes::Value, optional,
     [](ReaderCore& core, Model& model) { model.startTime = ReadSeconds(core); }},
    {"roomtemperature", "Roomtemperature", Takes::Value, optional,
     [](ReaderCore& core, Model& model) { model.roomTemperature = core.ExpectAtLeast(absoluteZero); }},
};
static_assert(IsComplete(properties));

}  // namespace

WordList AnalysisWords() {
    return properties;
}

void ReadAnalysisSection(ReaderCore& core, const ModelReading& reading) {
    PropertySet given;
    ReadProperties(core, properties, reading.model, given);
    given.Require(core, properties);
}

}  // namespace orvalo
