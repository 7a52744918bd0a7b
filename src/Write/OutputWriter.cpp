#include <cstddef>
#include <string>

#include "Write/SectionWriters.h"

namespace orvalo {

namespace {

/// The words of what an output records, or nothing for what has no words.
template <std::size_t n>
std::optional<std::string> ComponentWords(const ComponentWord (&components)[n], std::string_view codes) {
    std::string words;
    while (!codes.empty()) {
        const ComponentWord* found = nullptr;
        for (const ComponentWord& component : components) {
            // The word for all components stands alone.
            const bool fits = component.codes.size() <= 2 || (words.empty() && codes == component.codes);
            if (fits && codes.substr(0, component.codes.size()) == component.codes) found = &component;
        }
        if (found == nullptr) return std::nullopt;
        if (!words.empty()) words += ' ';
        words += found->word;
        codes.remove_prefix(found->codes.size());
    }
    return words;
}

template <class Output, std::size_t n>
void CheckOutput(const Subject& subject, const Output& output, const ComponentWord (&components)[n]) {
    const FileProperties& file = output.file;
    CheckId(subject, output.shared.id);
    if (!ComponentWords(components, output.output)) Refuse(subject, ": the output '", output.output, "' has no words");
    CheckName(subject, "file name", file.fileName);
    CheckCode(subject, "write mode", fileWriteModes, file.writeMode);
    CheckCode(subject, "notation", fileNotations, file.notation);
    CheckCode(subject, "file format", fileFormats, file.fileFormat);
    if (file.fileFormat == FileFormatMat && file.writeMode == FileWriteModeAppend) {
        Refuse(subject, ": no MAT-file can be appended to");
    }
}

/// Writes what sensors and dumps share.
template <class Output, std::size_t n>
void WriteOutput(const Output& output, const ComponentWord (&components)[n], SectionText& text) {
    const FileProperties& file = output.file;
    text.Property("output", ComponentWords(components, output.output).value_or(""));
    text.Name("filename", file.fileName);
    if (file.writeMode != FileWriteModeOverwrite) text.Property("writemode", fileWriteModes, file.writeMode);
    if (file.notation != FileNotationScientific) text.Property("notation", fileNotations, file.notation);
    if (file.fileFormat != FileFormatTxt) text.Property("fileformat", fileFormats, file.fileFormat);
    text.End();
}

}  // namespace

void CheckOutputs(const Model& model) {
    if (model.sensors.empty() && model.dumps.empty()) {
        Refuse("The model has neither a sensor nor a dump, and must have one");
    }
    for (const auto& [id, sensor] : model.sensors) CheckOutput({"Sensor", id}, sensor, sensorComponents);
    for (const auto& [id, dump] : model.dumps) CheckOutput({"Dump", id}, dump, dumpComponents);
}

void WriteOutputs(const Model& model, SectionText& text) {
    for (const auto& [id, sensor] : model.sensors) {
        text.Begin(ReadSensorSection);
        text.Property("id", id);
        text.Property("shape", "point");
        text.Property("position", sensor.shared.position);
        WriteOutput(sensor, sensorComponents, text);
    }
    for (const auto& [id, dump] : model.dumps) {
        text.Begin(ReadDumpSection);
        text.Property("id", id);
        WriteOutput(dump, dumpComponents, text);
    }
}

}  // namespace orvalo
