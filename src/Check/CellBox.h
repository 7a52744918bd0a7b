#pragma once

#include <array>
#include <cstddef>

#include "Check/ResultsFindings.h"
#include "Results/TextLines.h"

namespace orvalo {

/// The box around the cubes of results, and where its extremes stand in the file.
class CellBox {
public:
    /// Takes a coordinate: `axis` is 0 for x, 1 for y, 2 for z.
    void Include(std::size_t axis, int value, const TextPlace& place) {
        Axis& a = axes_[axis];
        if (!a.any || value < a.least) a.Set(a.least, value, a.leastPlace, place);
        if (!a.any || value > a.most) a.Set(a.most, value, a.mostPlace, place);
        a.any = true;
    }

    /// Notes the error of a box with more cells than can be numbered; nothing for a smaller one. A coordinate takes
    /// `length` bytes from its place on.
    void AddError(ResultsFindings& findings, std::uint64_t length) const;

private:
    struct Axis {
        int least = 0;
        int most = 0;
        TextPlace leastPlace;
        TextPlace mostPlace;
        bool any = false;

        std::uint64_t Size() const { return static_cast<std::uint64_t>(most - least) + 1; }
        static void Set(int& extreme, int value, TextPlace& extremePlace, const TextPlace& place) {
            extreme = value;
            extremePlace = place;
        }
    };

    std::array<Axis, 3> axes_;
};

}  // namespace orvalo
