#include <map>

#include "Check/Warnings.h"

namespace orvalo {

namespace {

/// Where each file was named first.
using FirstNames = std::map<std::string, ReadPlace>;

template <class Output>
void WarnOf(Warnings& warnings, const SectionRecord& section, const std::map<int, Output>& outputs, FirstNames& names) {
    const auto output = outputs.find(IdOf(section));
    if (output == outputs.end()) return;
    const std::string& fileName = output->second.file.fileName;
    const PropertyRecord* const components = section.Find("output");
    if (output->second.output.empty() && components != nullptr) {
        warnings.AddAt("empty-output", components->place,
                       "The output names no component, so that nothing is recorded.");
    }
    const PropertyRecord* const name = section.Find("filename");
    if (name == nullptr) return;
    const auto [first, added] = names.emplace(fileName, name->valuePlace);
    if (added) return;
    Diagnostic& warning = warnings.AddAt("shared-output-file", name->valuePlace,
                                         "Another output goes into the file \"" + fileName + "\" too.");
    warnings.AddNote(warning, "This is the other one.", first->second);
}

}  // namespace

void WarnOfOutputs(Warnings& warnings) {
    FirstNames names;
    for (const SectionRecord& section : warnings.Record().sections) {
        if (section.failed || !IsEnabled(section)) continue;
        if (section.section->word == "sensor") WarnOf(warnings, section, warnings.model.sensors, names);
        if (section.section->word == "dump") WarnOf(warnings, section, warnings.model.dumps, names);
    }
}

}  // namespace orvalo
