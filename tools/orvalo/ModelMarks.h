#pragma once

#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Model/Point.h>

/// Something of a model that is at a cube.
struct ModelMark {
    enum class Kind { actuator = 0, piezoPoint = 1, sensor = 2 };

    Kind kind = Kind::actuator;
    orvalo::Point cell;
    /// The ID, or of actuators, which have none, the number in the order of the file, from 1.
    int id = 0;
    /// What it is, in a few words.
    std::string name;
};

/// All actuators, piezo points and sensors. How a patch lies around its position is up to the solver: here its
/// coordinates run along the two axes across its own, in the order x, y, z, from its position on.
std::vector<ModelMark> MarksOf(const orvalo::Model& model);
