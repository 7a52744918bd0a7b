#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Material.h>

namespace orvalo {

/// The materials of a model in the order of their definition (the vector index), reachable also by the number that
/// the input file gives them (the file index, 1 to 255). "Air" is 0 in both.
class ORVALO3DREADER_EXPORT MaterialRepository {
public:
    /// Holds "Air" alone.
    MaterialRepository();

    /// Appends a copy under file index `fileIndex` (0 to 255, not checked to be free).
    void Add(const Material& material, int fileIndex);

    /// Number of materials, "Air" included.
    std::size_t Count() const { return materials_.size(); }
    /// The material at a vector index. Not range-checked.
    const Material& operator[](int vectorIndex) const { return materials_[static_cast<std::size_t>(vectorIndex)]; }
    /// Whether a file index (0 to 255) is taken.
    bool MaterialDefined(int fileIndex) const { return File2Vec(fileIndex) > -1; }
    /// Whether the material at a vector index is given by coefficients of temperature.
    bool TemperatureDependent(int vectorIndex) const { return (*this)[vectorIndex].temperatureDependent; }
    /// Vector index of a file index (0 to 255), -1 where none is defined.
    int File2Vec(int fileIndex) const { return fileToVector_[static_cast<std::size_t>(fileIndex)]; }
    /// File index of a vector index (0 to 255), -1 where unused.
    int Vec2File(int vectorIndex) const { return vectorToFile_[static_cast<std::size_t>(vectorIndex)]; }

    /// Forgets what SetTempMissing and SetTempIgnored noted.
    void ClearTemperaturesInfo();
    /// Notes a cell of a temperature-dependent material (vector index 0 to 255) that has no temperature.
    void SetTempMissing(int vectorIndex) { temperaturesMissing_[static_cast<std::size_t>(vectorIndex)] = true; }
    /// Notes a cell whose temperature its material (vector index 0 to 255) does not depend on.
    void SetTempIgnored(int vectorIndex) { temperaturesIgnored_[static_cast<std::size_t>(vectorIndex)] = true; }
    /// Makes the warnings text from what was noted: a line per material, first for missing, then for ignored
    /// temperatures, each in vector order. "Air" is never reported. `roomTemperature` is in degrees Celsius.
    void PrepareWarnings(double roomTemperature);
    /// The text that PrepareWarnings made; valid until the repository changes.
    const char* GetWarnings() const { return warnings_.c_str(); }

private:
    static constexpr std::size_t indices = 256;

    int Add(const std::string& name, double density, double vp, double vs);
    int Add(const Material& material);

    std::string warnings_;
    std::vector<Material> materials_;
    std::array<int, indices> fileToVector_;
    std::array<int, indices> vectorToFile_;
    std::array<bool, indices> temperaturesMissing_{};
    std::array<bool, indices> temperaturesIgnored_{};
};

}  // namespace orvalo
