#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// An isotropic elastic material. Units are those of the input file; "Air" is built in with lengths in millimetres
/// and times in seconds.
class ORVALO3DREADER_EXPORT Material {
public:
    /// A material named "<unknown>" with every property 0.
    Material();
    /// A material with that name and every property 0.
    explicit Material(const std::string& name);
    /// What `source`, a temperature-dependent material, is at `temperature` (degrees Celsius): each property is
    /// k0*T*T + k1*T + k2, the wave speeds and elastic constants follow as in SetFormat1. The name is empty.
    Material(const Material& source, double temperature);

    /// Density and wave speeds given: mu = density*vs^2, lambda = (vp^2 - 2*vs^2)*density.
    void SetFormat0(double density, double vp, double vs);
    /// Density, Young's modulus E and Poisson's ratio nu given:
    /// vp = sqrt(E*(1-nu) / ((1-2*nu)*(1+nu)*density)), mu = E / (2*(1+nu)), vs = sqrt(mu/density), lambda as in
    /// SetFormat0. Values outside the physical range give the infinities and NaNs of the arithmetic.
    void SetFormat1(double density, double young, double poisson);
    /// Temperature-dependent: three coefficients of T^2, T and 1 for each property. Wave speeds, density and elastic
    /// constants stay as they were.
    void SetFormat2(const double (&density)[3], const double (&young)[3], const double (&poisson)[3]);

    /// In lower case when read from a file.
    std::string name;
    /// True only for materials given by coefficients (SetFormat2).
    bool temperatureDependent = false;
    /// Longitudinal (pressure) wave speed.
    double vp = 0.0;
    /// Transverse (shear) wave speed.
    double vs = 0.0;
    /// Mass density.
    double density = 0.0;
    /// Shear modulus, the second Lamé constant.
    double mu = 0.0;
    /// First Lamé constant.
    double lambda = 0.0;
    /// Coefficients of T^2, T and 1 (T in degrees Celsius) for the density; like the next two meaningful only when
    /// temperatureDependent.
    double densityCoefficients[3] = {};
    double youngCoefficients[3] = {};    ///< The same for Young's modulus.
    double poissonCoefficients[3] = {};  ///< The same for Poisson's ratio.
};

}  // namespace orvalo
