#pragma once

#include <Orvalo3DReader/Model/Model.h>

namespace orvalo::fuzz {

/// Ends the process unless the model is one that the reader may give: everything that it counts, names or bounds is
/// there.
void CheckModel(const Model& model, bool cubesOnly, bool doublePrecision);

}  // namespace orvalo::fuzz
