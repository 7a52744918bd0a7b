#pragma once

#include <Orvalo3DReader/Model/SharedProperties.h>

namespace orvalo {

class Table;

/// What drives an actuator.
enum ActuatorInput : int {
    ActuatorInputDefinition = 0,  ///< `definition`: a waveform, from which a table is generated.
    ActuatorInputWave = 1,        ///< `wave`: a table of the file.
};

/// How the samples act; of piezo patches too.
enum ActuatorMethod : int {
    ActuatorMethodUnset = 0,     ///< Not given.
    ActuatorMethodForce = 1,     ///< `force`.
    ActuatorMethodAbsolute = 2,  ///< `absolute`.
};

/// How much of its shape a waveform shows.
enum ActuatorType : int {
    ActuatorTypeUnset = 0,           ///< Not given.
    ActuatorTypeFullPulse = 1,       ///< `fullpulse`: one period.
    ActuatorTypeHalfPulse = 2,       ///< `halfpulse`: half a period.
    ActuatorTypeContinuousWave = 3,  ///< `continuouswave`: of a frequency of its own.
};

/// The shape of a waveform.
enum ActuatorWaveform : int {
    ActuatorWaveformUnset = 0,     ///< Not given.
    ActuatorWaveformSquare = 1,    ///< `square`.
    ActuatorWaveformSine = 2,      ///< `sine`.
    ActuatorWaveformGaussian = 3,  ///< `gaussian`: a bell over the duration.
};

/// What a continuous wave is multiplied by.
enum ActuatorEnvelope : int {
    ActuatorEnvelopeNone = 0,        ///< `none`.
    ActuatorEnvelopeHannWindow = 1,  ///< `hannwindow`, over the duration.
};

/// A source of excitation at one cube, driven by a table of samples or by a waveform.
struct Actuator {
    /// The waveform from which a table is generated when the actuator names none.
    struct Definition {
        /// An ActuatorType.
        int type = ActuatorTypeUnset;
        /// An ActuatorWaveform.
        int waveform = ActuatorWaveformUnset;
        /// An ActuatorEnvelope.
        int envelope = ActuatorEnvelopeNone;
        /// In kilohertz.
        double frequency = 0.0;
        /// In microseconds.
        double duration = 0.0;
        /// In degrees.
        double phase = 0.0;
    };

    /// The section has no ID, so `shared.id` stays -1.
    SharedProperties shared;
    /// The start as a negated count of time steps.
    int start = 0;
    /// An ActuatorInput.
    int input = ActuatorInputDefinition;
    /// An ActuatorMethod.
    int method = ActuatorMethodUnset;
    /// The waveform, where the actuator is given by definition.
    Definition definition;
    /// Factor for the samples.
    double amplitude = 1.0;
    /// Whether the signal is to be inverted.
    bool invert = false;
    bool directionU = false;  ///< Whether it drives the displacement u.
    bool directionV = false;  ///< Whether it drives v.
    bool directionW = false;  ///< Whether it drives w.
    double factorU = 1.0;     ///< Factor for u.
    double factorV = 1.0;     ///< Factor for v.
    double factorW = 1.0;     ///< Factor for w.
    /// The table that drives the actuator: positive from a TABLE section, negative when generated, 0 for none.
    int tableId = 0;
    /// The model's table of that ID, set at the end of a whole-model read. Not owned: it lives as long as the model
    /// that was read, or a copy of it.
    Table* table = nullptr;
};

}  // namespace orvalo
