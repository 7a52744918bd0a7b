#pragma once

#include <Orvalo3DReader/Model/Material.h>

namespace orvalo {

/// How a material is written: the numbers of its row in one of the formats. A model holds what follows from them.
struct MaterialNumbers {
    int format = -1;
    int count = 0;
    double numbers[9] = {};
};

/// The numbers from which exactly that material follows, in the format in which they are shorter. The format is -1
/// where there are none: where somebody has set wave speeds and elastic constants that do not belong together.
MaterialNumbers FindNumbers(const Material& material);

}  // namespace orvalo
