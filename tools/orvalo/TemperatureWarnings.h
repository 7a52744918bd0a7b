#pragma once

#include <vector>

#include <Orvalo3DReader/Model/Model.h>

#include "Problem.h"

/// Holds the temperatures of the grid of a whole model against its materials: a warning for each material that depends
/// on temperature where cubes have none, and for each that does not where they have one.
std::vector<Problem> TemperatureWarnings(orvalo::Model& model);
