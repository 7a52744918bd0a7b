#pragma once

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Model/Model.h>

#include "view/PageBlocks.h"

/// The marks of a page: what of a model stands at a cube, with kind, cell and name.
nlohmann::ordered_json PageMarks(const orvalo::Model& model);
/// Actuators, patches, sensors, dumps and sets with their facts, and cells where they have one.
nlohmann::ordered_json PageObjects(const orvalo::Model& model);
/// Positions of sets.
nlohmann::ordered_json PageSets(const orvalo::Model& model, PageBlocks& blocks);
/// What drives actuators and patches, as samples over microseconds.
nlohmann::ordered_json PageSignals(const orvalo::Model& model, PageBlocks& blocks);
