#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Model/Model.h>

/// What an engineer wants to know of a model at a glance and has to compute; the rest stands in the model itself.
struct ModelSummary {
    struct Axis {
        int first = 0;
        int last = 0;
        int cubes = 0;
    };
    struct Range {
        double least = 0.0;
        double greatest = 0.0;
    };
    /// A material that the file defines or the grid uses.
    struct MaterialUse {
        /// The number in the file.
        int number = 0;
        /// 0 for one that is only defined.
        std::size_t cubes = 0;
        /// As the material is at room temperature; nothing when only the cubes were read.
        std::optional<orvalo::Material> properties;
    };
    /// How long an actuator or a piezo patch is driven.
    struct Excitation {
        std::size_t samples = 0;
        /// In microseconds.
        double start = 0.0;
        double duration = 0.0;
    };

    bool cubesOnly = false;
    /// In microseconds, as the file says.
    double timeStep = 0.0;
    double startTime = 0.0;
    /// The box of all cubes and damping cubes along x, y and z.
    std::array<Axis, 3> box;
    std::vector<MaterialUse> materials;
    /// In degrees Celsius; nothing for a grid without.
    std::optional<Range> temperatures;
    /// Nothing without damping cubes.
    std::optional<Range> dampingCoefficients;
    /// Of the model's actuators and piezo patches, in their order.
    std::vector<Excitation> actuators;
    std::vector<Excitation> piezos;
};

ModelSummary Summarize(const orvalo::Model& model, bool cubesOnly);

/// The whole summary for scripts. Times are in microseconds, numbers that are not finite become null.
void AddToJson(nlohmann::ordered_json& document, const orvalo::Model& model, const ModelSummary& summary);

/// The whole summary for people, as indented lines. Long lists are cut short.
std::string ToText(const orvalo::Model& model, const ModelSummary& summary);
