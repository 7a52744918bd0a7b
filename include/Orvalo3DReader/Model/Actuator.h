#pragma once

#include <Orvalo3DReader/Model/SharedProperties.h>

namespace orvalo {

class Table;

/// A source of excitation at one cube, driven by a table of samples or by a waveform.
struct Actuator {
    /// The waveform from which a table is generated when the actuator names none.
    struct Definition {
        /// 1 full pulse, 2 half pulse, 3 continuous wave; 0 when not given.
        int type = 0;
        /// 1 square, 2 sine, 3 gaussian; 0 when not given.
        int waveform = 0;
        /// 0 none, 1 Hann window.
        int envelope = 0;
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
    /// 0 by definition (waveform), 1 by wave (table).
    int input = 0;
    /// 1 force, 2 absolute; 0 when not given.
    int method = 0;
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
