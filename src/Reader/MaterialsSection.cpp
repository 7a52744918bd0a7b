#include "Common/Raise.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

/// The one word among numbers and names.
struct Closing {
    std::string_view word;
};
constexpr Closing words[] = {{"end"}};

enum Format { WaveSpeeds, ElasticConstants, TemperatureCoefficients };

void ReadTriplet(ReaderCore& core, double (&values)[3]) {
    for (double& value : values) {
        core.NextToken();
        value = core.ExpectNumber();
    }
}

int ReadMaterialNumber(const ReaderCore& core, const MaterialRepository& materials) {
    const auto number = core.Truncated();
    if (!number || *number < 1 || *number > 255) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidMaterialNumber);
    const int fileIndex = static_cast<int>(*number);
    if (materials.MaterialDefined(fileIndex)) ORVALO_RAISE(SectionReader, ReaderMessages::MaterialIndexReused);
    return fileIndex;
}

std::int64_t ReadMaterialFormat(const ReaderCore& core) {
    const auto format = core.Truncated();
    if (!format || *format < 0 || *format > 3) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidMaterialFormat);
    return *format;
}

void ReadProperties(ReaderCore& core, std::int64_t format, Material& material) {
    if (format > TemperatureCoefficients) ORVALO_RAISE(SectionReader, ReaderMessages::UnsuppMaterialFormat);
    double first[3];
    ReadTriplet(core, first);
    if (format == WaveSpeeds) {
        material.SetFormat0(first[0], first[1], first[2]);
    } else if (format == ElasticConstants) {
        material.SetFormat1(first[0], first[1], first[2]);
    } else {
        double young[3];
        double poisson[3];
        ReadTriplet(core, young);
        ReadTriplet(core, poisson);
        material.SetFormat2(first, young, poisson);
    }
}

}  // namespace

WordList MaterialsWords() {
    return words;
}

void ReadMaterialsSection(ReaderCore& core, const ModelReading& reading) {
    MaterialRepository& materials = reading.model.materials;
    for (;;) {
        core.NextToken();
        if (core.IsKeyword("end")) return;
        const int fileIndex = ReadMaterialNumber(core, materials);
        core.NextToken();
        const std::int64_t format = ReadMaterialFormat(core);
        core.NextToken();
        if (core.token.type != TokenType::String) ORVALO_RAISE(SectionReader, ReaderMessages::MaterialNameExpected);
        Material material(core.token.text);
        ReadProperties(core, format, material);
        materials.Add(material, fileIndex);
    }
}

}  // namespace orvalo
