#include "Check/CellBox.h"

#include <algorithm>
#include <limits>
#include <string>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/Explanations.h"
#include "Results/TextRow.h"

namespace orvalo {

void CellBox::AddError(ResultsFindings& findings, std::uint64_t length) const {
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t cells = axes_[0].Size() * axes_[1].Size() * axes_[2].Size();
    if (cells <= most) return;
    const auto* const axis =
        std::max_element(axes_.begin(), axes_.end(), [](const Axis& a, const Axis& b) { return a.Size() < b.Size(); });
    const std::string name(indexNames[static_cast<std::size_t>(axis - axes_.begin())]);
    Diagnostic* const error =
        findings.Add(ErrorOf(ReaderMessages::OutOfMemory), findings.PlaceAt(axis->mostPlace), length);
    AddNote(*error, "The box around all cubes has " + std::to_string(cells) + " cells; it may have at most " +
                        std::to_string(most) + ".");
    AddNote(*error, name + " goes up to " + std::to_string(axis->most) + " here.", findings.PlaceAt(axis->mostPlace),
            length);
    AddNote(*error,
            name + " goes down to " + std::to_string(axis->least) +
                " here. A negative index is also what a number beyond 32767 wraps to.",
            findings.PlaceAt(axis->leastPlace), length);
}

}  // namespace orvalo
