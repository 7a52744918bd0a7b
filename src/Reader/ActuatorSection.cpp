#include "Common/Raise.h"
#include "Model/CodeWords.h"
#include "Reader/PointShape.h"
#include "Reader/Properties.h"
#include "Reader/Sections.h"
#include "Reader/StartSteps.h"

namespace orvalo {

namespace {

struct ActuatorReading {
    Actuator actuator;
    Model& model;
};

// An actuator is driven by a table or by a waveform that is defined here.
constexpr int wave = 1;
constexpr Need forWave = 2;
constexpr Need forDefinition = 4;

struct Direction {
    std::string_view word;
    bool u;
    bool v;
    bool w;
};
constexpr Direction directions[] = {
    {"u", true, false, false}, {"v", false, true, false}, {"w", false, false, true}, {"all", true, true, true}};
static_assert(HasWords(directions));

void ReadDirection(ReaderCore& core, ActuatorReading& reading) {
    Actuator& actuator = reading.actuator;
    actuator.directionU = actuator.directionV = actuator.directionW = false;
    for (;; core.NextToken()) {
        const auto row = core.FindWord(directions, module::ActuatorReader, ReaderMessages::ActuatorDirExpected);
        if (!row) return;
        actuator.directionU |= directions[*row].u;
        actuator.directionV |= directions[*row].v;
        actuator.directionW |= directions[*row].w;
    }
}

void ReadTableID(ReaderCore& core, ActuatorReading& reading) {
    if (reading.actuator.tableId != 0) ORVALO_RAISE(SectionReader, ReaderMessages::TableIDAlreadySpecified);
    reading.actuator.tableId = core.ReadID();
    reading.model.requiredTables[reading.actuator.tableId] = 0;
}

/// Reads a number into a member of the actuator.
template <double Actuator::*factor>
void ReadFactor(ReaderCore& core, ActuatorReading& reading) {
    reading.actuator.*factor = core.ExpectNumber();
}

constexpr Property<ActuatorReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"enabled", "Enabled", Takes::Switch},
    {"shape", "Shape", Takes::Value, always, [](ReaderCore& core, ActuatorReading&) { CheckPointShape(core); }},
    {"position", "Position", Takes::Value, always,
     [](ReaderCore& core, ActuatorReading& r) { r.actuator.shared.position = core.ReadCoordinates(); }},
    {"input", "Input", Takes::Value, always,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.input = core.ReadCode(actuatorInputs, ReaderMessages::ActuatorInputExpected);
     }},
    {"start", "Start", Takes::Value, optional,
     [](ReaderCore& core, ActuatorReading& r) { r.actuator.start = ReadStartSteps(core, r.model.timeStep); }},
    {"table", "Table", Takes::Value, forWave, ReadTableID},
    {"type", "Type", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.definition.type = core.ReadCode(actuatorTypes, ReaderMessages::ActuatorTypeExpected);
     }},
    {"method", "Method", Takes::Value, always,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.method = core.ReadCode(excitationMethods, ReaderMessages::ActuatorMethodExpected);
     }},
    {"direction", "Direction", Takes::Words, optional, ReadDirection},
    {"waveform", "Waveform", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.definition.waveform = core.ReadCode(actuatorWaveforms, ReaderMessages::ActuatorWaveformExpected);
     }},
    {"envelope", "Envelope", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.definition.envelope = core.ReadCode(actuatorEnvelopes, ReaderMessages::ActuatorEnvelopeExpected);
     }},
    {"frequency", "Frequency", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) { r.actuator.definition.frequency = core.ExpectAtLeast(0.0); }},
    {"duration", "Duration", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) { r.actuator.definition.duration = core.ExpectGreaterThan(0.0); }},
    {"phase", "Phase", Takes::Value, forDefinition,
     [](ReaderCore& core, ActuatorReading& r) { r.actuator.definition.phase = core.ExpectNumber(); }},
    {"amplitude", "Amplitude", Takes::Value, optional, ReadFactor<&Actuator::amplitude>},
    {"factoru", "FactorU", Takes::Value, optional, ReadFactor<&Actuator::factorU>},
    {"factorv", "FactorV", Takes::Value, optional, ReadFactor<&Actuator::factorV>},
    {"factorw", "FactorW", Takes::Value, optional, ReadFactor<&Actuator::factorW>},
    {"processing", "Processing", Takes::Value, optional,
     [](ReaderCore& core, ActuatorReading& r) {
         r.actuator.invert = core.ReadCode(actuatorProcessings, ReaderMessages::ActuatorProcesngExpected) == 1;
     }},
};
static_assert(IsComplete(properties));

}  // namespace

WordList ActuatorWords() {
    return properties;
}

void ReadActuatorSection(ReaderCore& core, const ModelReading& reading) {
    ActuatorReading own{{}, reading.model};
    PropertySet given;
    if (!ReadProperties(core, properties, own, given)) return core.SkipToEnd();
    const Need driven = own.actuator.input == wave ? forWave : forDefinition;
    if (given.Lacks(core, properties, always | driven)) {
        ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    reading.model.actuators.push_back(own.actuator);
}

}  // namespace orvalo
