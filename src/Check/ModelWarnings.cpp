#include "Check/ModelWarnings.h"

#include "Check/Warnings.h"

namespace orvalo {

void AddModelWarnings(const Model& model, const std::string&, const CheckOptions& options, ErrorCollector& found) {
    Warnings warnings(model, options, found);
    // First, for it looks at the errors that were found.
    WarnOfNumbers(warnings);
    WarnOfRows(warnings);
    WarnOfPositions(warnings);
    WarnOfMaterials(warnings);
    WarnOfExcitation(warnings);
    WarnOfOutputs(warnings);
}

}  // namespace orvalo
