#include <bit>
#include <cmath>
#include <limits>

#include "Write/SectionWriters.h"
#include "Write/Times.h"

namespace orvalo {

namespace {

bool Differs(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) != std::bit_cast<std::uint64_t>(b);
}

/// What an actuator by definition must say, and one by wave may.
void CheckDefinition(const Subject& subject, const Actuator& actuator, double timeStep) {
    const Actuator::Definition& d = actuator.definition;
    const bool required = actuator.input == ActuatorInputDefinition;
    if (required || d.type != ActuatorTypeUnset) CheckCode(subject, "type", actuatorTypes, d.type);
    if (required || d.waveform != ActuatorWaveformUnset) CheckCode(subject, "waveform", actuatorWaveforms, d.waveform);
    CheckCode(subject, "envelope", actuatorEnvelopes, d.envelope);
    CheckAtLeast(subject, "frequency", d.frequency, 0.0);
    if (required || Differs(d.duration, 0.0)) CheckAbove(subject, "duration", d.duration, 0.0);
    CheckNumber(subject, "phase", d.phase);
    if (actuator.tableId > 0) return;
    constexpr double limit = 18446744073709551616.0;  // 2^64
    const double samples = std::ceil(d.duration / (timeStep * 1e6));
    if (!(samples >= 0.0 && samples < limit)) Refuse(subject, ": its signal has no number of samples");
}

void CheckActuator(const Subject& subject, const Actuator& actuator, const Model& model) {
    CheckStart(subject, actuator.start, model.timeStep);
    CheckCode(subject, "input", actuatorInputs, actuator.input);
    CheckCode(subject, "method", excitationMethods, actuator.method);
    if (actuator.input == ActuatorInputWave && actuator.tableId <= 0)
        Refuse(subject, " is driven by a table, and has none");
    if (actuator.tableId > 0 && model.tables.count(actuator.tableId) == 0) {
        Refuse(subject, ": the model has no table ", actuator.tableId);
    }
    CheckDefinition(subject, actuator, model.timeStep);
    CheckNumber(subject, "amplitude", actuator.amplitude);
    CheckNumber(subject, "factor of u", actuator.factorU);
    CheckNumber(subject, "factor of v", actuator.factorV);
    CheckNumber(subject, "factor of w", actuator.factorW);
}

void WriteDefinition(const Actuator& actuator, SectionText& text) {
    const Actuator::Definition& d = actuator.definition;
    const bool all = actuator.input == ActuatorInputDefinition;
    if (all || d.type != ActuatorTypeUnset) text.Property("type", actuatorTypes, d.type);
    if (all || d.waveform != ActuatorWaveformUnset) text.Property("waveform", actuatorWaveforms, d.waveform);
    if (all || d.envelope != ActuatorEnvelopeNone) text.Property("envelope", actuatorEnvelopes, d.envelope);
    if (all || Differs(d.frequency, 0.0)) text.Property("frequency", d.frequency);
    if (all || Differs(d.duration, 0.0)) text.Property("duration", d.duration);
    if (all || Differs(d.phase, 0.0)) text.Property("phase", d.phase);
}

void WriteDirection(const Actuator& actuator, SectionText& text) {
    std::string words;
    if (actuator.directionU) words += " u";
    if (actuator.directionV) words += " v";
    if (actuator.directionW) words += " w";
    if (words.empty()) return;
    text.Property("direction", words == " u v w" ? "all" : std::string_view(words).substr(1));
}

void WriteUnless(double byDefault, std::string_view word, double value, SectionText& text) {
    if (Differs(value, byDefault)) text.Property(word, value);
}

}  // namespace

void CheckStart(const Subject& subject, int start, double timeStep) {
    if (start > 0) Refuse(subject, ": the start is ", start, ", and must be a negated number of time steps");
    if (start < -std::numeric_limits<int>::max() || !StartMicroseconds(-start, timeStep)) {
        Refuse(subject, ": no number of microseconds is a start of ", -static_cast<long long>(start), " time steps");
    }
}

void WriteStart(int start, double timeStep, SectionText& text) {
    if (start != 0) text.Property("start", StartMicroseconds(-start, timeStep).value_or(0.0));
}

void CheckActuators(const Model& model) {
    if (model.actuators.empty() && model.piezos.empty()) {
        Refuse("The model has neither an actuator nor a piezo patch, and must have one");
    }
    long long number = 0;
    for (const Actuator& actuator : model.actuators) CheckActuator({"Actuator", ++number}, actuator, model);
}

void WriteActuators(const Model& model, SectionText& text) {
    for (const Actuator& actuator : model.actuators) {
        text.Begin(ReadActuatorSection);
        text.Property("shape", "point");
        text.Property("position", actuator.shared.position);
        text.Property("input", actuatorInputs, actuator.input);
        if (actuator.tableId > 0) text.Property("table", actuator.tableId);
        WriteDefinition(actuator, text);
        text.Property("method", excitationMethods, actuator.method);
        WriteDirection(actuator, text);
        WriteStart(actuator.start, model.timeStep, text);
        WriteUnless(1.0, "amplitude", actuator.amplitude, text);
        WriteUnless(1.0, "factoru", actuator.factorU, text);
        WriteUnless(1.0, "factorv", actuator.factorV, text);
        WriteUnless(1.0, "factorw", actuator.factorW, text);
        if (actuator.invert) text.Property("processing", actuatorProcessings, 1);
        text.End();
    }
}

}  // namespace orvalo
