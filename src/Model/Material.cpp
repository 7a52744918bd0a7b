#include <algorithm>
#include <cmath>
#include <iterator>

#include <Orvalo3DReader/Model/Material.h>

namespace orvalo {

namespace {

double Lambda(double vp, double vs, double density) {
    return (vp * vp - vs * 2 * vs) * density;
}

double At(const double (&k)[3], double temperature) {
    return temperature * k[0] * temperature + temperature * k[1] + k[2];
}

}  // namespace

Material::Material() : Material("<unknown>") {}

Material::Material(const std::string& materialName) : name(materialName) {}

Material::Material(const Material& source, double temperature) {
    SetFormat1(At(source.densityCoefficients, temperature), At(source.youngCoefficients, temperature),
               At(source.poissonCoefficients, temperature));
}

void Material::SetFormat0(double newDensity, double newVp, double newVs) {
    temperatureDependent = false;
    vp = newVp;
    vs = newVs;
    density = newDensity;
    mu = density * vs * vs;
    lambda = Lambda(vp, vs, density);
}

// The order of the operations is fixed: another one rounds differently.
void Material::SetFormat1(double newDensity, double young, double poisson) {
    temperatureDependent = false;
    density = newDensity;
    vp = std::sqrt(young / ((1 - 2 * poisson) * ((poisson + 1) * density) / (1 - poisson)));
    mu = young / ((poisson + 1) * 2);
    vs = std::sqrt(mu / density);
    lambda = Lambda(vp, vs, density);
}

void Material::SetFormat2(const double (&newDensity)[3], const double (&young)[3], const double (&poisson)[3]) {
    temperatureDependent = true;
    std::copy(std::begin(newDensity), std::end(newDensity), densityCoefficients);
    std::copy(std::begin(young), std::end(young), youngCoefficients);
    std::copy(std::begin(poisson), std::end(poisson), poissonCoefficients);
}

}  // namespace orvalo
