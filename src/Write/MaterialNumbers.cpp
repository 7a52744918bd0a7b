#include "Write/MaterialNumbers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include "Write/ShortestDecimal.h"
#include "Write/Times.h"

namespace orvalo {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Elastic {
    double young;
    double poisson;
};

bool Same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

bool Same(const Material& a, const Material& b) {
    return Same(a.density, b.density) && Same(a.vp, b.vp) && Same(a.vs, b.vs) && Same(a.mu, b.mu) &&
           Same(a.lambda, b.lambda);
}

Material MadeOf(double density, const Elastic& elastic) {
    Material material;
    material.SetFormat1(density, elastic.young, elastic.poisson);
    return material;
}

bool Serves(const Material& wanted, const Elastic& elastic) {
    return !std::isnan(elastic.young) && !std::isnan(elastic.poisson) && Same(wanted, MadeOf(wanted.density, elastic));
}

/// The shortest Young's modulus that with that Poisson's ratio gives the material, if there is one: the shear modulus
/// tells it to the last bits.
std::optional<Elastic> WithPoisson(const Material& wanted, double poisson, int leastDigits) {
    const double about = wanted.mu * (2 * (poisson + 1));
    for (int digits = leastDigits; digits <= std::numeric_limits<double>::digits10; ++digits) {
        const Elastic elastic = {RoundedTo(digits, about), poisson};
        if (Serves(wanted, elastic)) return elastic;
    }
    double young = std::nextafter(std::nextafter(about, -infinity), -infinity);
    for (int i = 0; i < 5; ++i) {
        if (Serves(wanted, {young, poisson})) return Elastic{young, poisson};
        young = std::nextafter(young, infinity);
    }
    return std::nullopt;
}

/// Poisson's ratio as far as the wave speeds tell it. Between -1 and 0.5 their ratio grows with it, so that halving the
/// interval comes as near as rounding allows, where a formula loses digits to differences.
double PoissonOf(const Material& wanted) {
    const double squares = (wanted.vp / wanted.vs) * (wanted.vp / wanted.vs);
    if (!(squares > 4.0 / 3)) return (squares - 2) / (2 * (squares - 1));
    double low = -1;
    double high = 0.5;
    for (int i = 0; i < 1100; ++i) {
        const double middle = low + (high - low) / 2;
        if (middle == low || middle == high) break;
        const double vp = MadeOf(wanted.density, {wanted.mu * (2 * (middle + 1)), middle}).vp;
        (vp < wanted.vp ? low : high) = middle;
    }
    return high;
}

/// What gives infinities, zeros and no numbers: absurd materials pass through a file like others.
std::optional<Elastic> FindDegenerate(const Material& wanted) {
    constexpr double ratios[] = {0.0,  0.25, 0.5,    0.75,  1.0,    2.0,      -0.5,
                                 -1.0, -2.0, 1e-300, 1e300, -1e300, infinity, -infinity};
    constexpr double moduli[] = {0.0, -0.0, 1.0, -1.0, 1e300, -1e300, 1e-300, -1e-300, infinity, -infinity};
    for (const double poisson : ratios) {
        if (const auto found = WithPoisson(wanted, poisson, 1)) return found;
        for (const double young : moduli) {
            if (Serves(wanted, {young, poisson})) return Elastic{young, poisson};
        }
    }
    return std::nullopt;
}

std::optional<Elastic> FindElastic(const Material& wanted) {
    const double about = PoissonOf(wanted);
    for (int digits = 1; digits <= std::numeric_limits<double>::digits10; ++digits) {
        if (const auto found = WithPoisson(wanted, RoundedTo(digits, about), 1)) return found;
    }
    // The sum of 1 and the ratio has no digits below its own last ones.
    constexpr int steps = 2000;
    const double step = std::max(std::abs(about) * 0x1p-53, 0x1p-55);
    for (int i = 0; i < steps; ++i) {
        for (const int sign : {1, -1}) {
            const auto found = WithPoisson(wanted, about + sign * i * step, std::numeric_limits<double>::digits10);
            if (found) return found;
        }
    }
    return FindDegenerate(wanted);
}

std::ptrdiff_t Length(double a, double b) {
    char text[2 * decimalRoom];
    return WriteDecimal(WriteDecimal(text, a), b) - text;
}

}  // namespace

MaterialNumbers FindNumbers(const Material& material) {
    if (material.temperatureDependent) {
        MaterialNumbers found{2, 9, {}};
        double* next = found.numbers;
        for (const auto* three :
             {&material.densityCoefficients, &material.youngCoefficients, &material.poissonCoefficients}) {
            next = std::copy(std::begin(*three), std::end(*three), next);
        }
        return found;
    }
    Material bySpeeds;
    bySpeeds.SetFormat0(material.density, material.vp, material.vs);
    const bool speedsServe = Same(material, bySpeeds) && !std::isnan(material.vp) && !std::isnan(material.vs);
    const MaterialNumbers speeds{0, 3, {material.density, material.vp, material.vs}};
    // Numbers so short are what somebody wrote.
    constexpr std::ptrdiff_t surelyWritten = 16;
    if (speedsServe && Length(material.vp, material.vs) <= surelyWritten) return speeds;
    const auto elastic = FindElastic(material);
    if (speedsServe && (!elastic || Length(material.vp, material.vs) <= Length(elastic->young, elastic->poisson))) {
        return speeds;
    }
    if (!elastic) return {};
    return {1, 3, {material.density, elastic->young, elastic->poisson}};
}

}  // namespace orvalo
