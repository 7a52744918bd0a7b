#pragma once

#include <algorithm>
#include <cmath>

/// How far two numbers may lie apart and still count as equal.
struct Tolerance {
    double absolute = 0.0;
    /// Of the larger magnitude.
    double relative = 0.0;
    /// Whether what is no number differs from itself.
    bool nanDiffers = false;

    bool Accepts(double a, double b) const {
        if (a == b) return true;
        if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b) && !nanDiffers;
        // Against infinity every distance is as infinite as what it is compared with.
        if (std::isinf(a) || std::isinf(b)) return false;
        const double distance = std::abs(a - b);
        return distance <= absolute || distance <= relative * std::max(std::abs(a), std::abs(b));
    }
};
