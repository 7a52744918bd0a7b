#include "Reader/StartSteps.h"

#include <cmath>
#include <limits>

#include "Common/Raise.h"

namespace orvalo {

int ReadStartSteps(const ReaderCore& core, double timeStep) {
    const double steps = std::ceil(core.ExpectAtLeast(0.0) / (timeStep * 1e6));
    if (std::isnan(steps)) return 0;
    // A time step of -0.0, which is not below 0, makes them negative.
    if (std::abs(steps) > std::numeric_limits<int>::max()) {
        core.range = {0.0, std::numeric_limits<int>::max() * timeStep * 1e6, true};
        ORVALO_RAISE(SectionReader, ReaderMessages::InvalidPropertyValue);
    }
    return -static_cast<int>(steps);
}

}  // namespace orvalo
