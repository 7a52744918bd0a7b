#include <charconv>
#include <iterator>
#include <limits>

#include <Orvalo3DReader/Model/MaterialRepository.h>

namespace orvalo {

namespace {

// Not printf: its decimal point follows the locale of the process.
std::string OneDecimal(double value) {
    char text[std::numeric_limits<double>::max_exponent10 + 8];
    const auto [end, error] = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed, 1);
    return {text, end};
}

}  // namespace

MaterialRepository::MaterialRepository() {
    // Air, with lengths in millimetres.
    Add("Air", 1.225e-6, 343000.0, 343000.0);
    fileToVector_.fill(-1);
    vectorToFile_.fill(-1);
    fileToVector_[0] = 0;
    vectorToFile_[0] = 0;
}

int MaterialRepository::Add(const std::string& name, double density, double vp, double vs) {
    Material material(name);
    material.SetFormat0(density, vp, vs);
    return Add(material);
}

int MaterialRepository::Add(const Material& material) {
    materials_.push_back(material);
    return static_cast<int>(materials_.size()) - 1;
}

void MaterialRepository::Add(const Material& material, int fileIndex) {
    const int vectorIndex = Add(material);
    fileToVector_[static_cast<std::size_t>(fileIndex)] = vectorIndex;
    vectorToFile_[static_cast<std::size_t>(vectorIndex)] = fileIndex;
}

void MaterialRepository::ClearTemperaturesInfo() {
    temperaturesMissing_.fill(false);
    temperaturesIgnored_.fill(false);
}

void MaterialRepository::PrepareWarnings(double roomTemperature) {
    warnings_.clear();
    for (std::size_t i = 1; i < indices; ++i) {
        if (!temperaturesMissing_[i]) continue;
        warnings_ += "Missing temperatures for temperature-dependent definition of material #" +
                     std::to_string(vectorToFile_[i]) + ". Room temperature (" + OneDecimal(roomTemperature) +
                     " deg C) assumed.\n";
    }
    for (std::size_t i = 1; i < indices; ++i) {
        if (!temperaturesIgnored_[i]) continue;
        warnings_ += "Temperatures of cells made of material #" + std::to_string(vectorToFile_[i]) +
                     " were ignored, because material is defined as non-temperature dependent.\n";
    }
}

}  // namespace orvalo
