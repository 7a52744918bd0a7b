#include <string_view>

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

/// Whether the rest of a line may be that of a material, rather than more coefficients.
bool NamesSomething(std::string_view rest) {
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (rest[i] == '"') return true;
        const bool letter = (rest[i] | 0x20) >= 'a' && (rest[i] | 0x20) <= 'z';
        if (letter && (i == 0 || rest[i - 1] == ' ' || rest[i - 1] == '\t')) return true;
    }
    return false;
}

/// Reads a material from its number on. The number counts as defined even if the rest fails.
void ReadMaterial(ReaderCore& core, MaterialRepository& materials) {
    const int fileIndex = ReadMaterialNumber(core, materials);
    Material material;
    const bool whole = core.Attempt([&] {
        core.NextToken();
        const std::int64_t format = ReadMaterialFormat(core);
        core.NextToken();
        if (core.token.type != TokenType::String) ORVALO_RAISE(SectionReader, ReaderMessages::MaterialNameExpected);
        material.name = core.token.text;
        ReadProperties(core, format, material);
    });
    materials.Add(material, fileIndex);
    if (!whole) core.ResumeOnLaterLine(NamesSomething);
}

}  // namespace

WordList MaterialsWords() {
    return words;
}

void ReadMaterialsSection(ReaderCore& core, const ModelReading& reading) {
    for (;;) {
        const bool whole = core.Attempt([&] {
            core.NextToken();
            if (core.IsKeyword("end")) return;
            if (core.recovery != nullptr) core.recovery->RowBegins();
            ReadMaterial(core, reading.model.materials);
        });
        if (core.recovery != nullptr) core.recovery->PropertyEnds();
        if (!whole && core.AtSection()) return core.Hold();
        if (!whole) core.ResumeOnLaterLine(NamesSomething);
        if (whole && core.IsKeyword("end") && !core.IsHeld()) return;
    }
}

}  // namespace orvalo
