#include <string_view>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"
#include "Reader/WordList.h"

// Properties that are missing, given twice, or do not go together.

namespace orvalo {

void ExplainMissingProperties(Diagnostic& diagnostic, ErrorCollector& errors) {
    const ReaderCore& core = errors.Core();
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return;
    const auto& open = errors.OpenProperties();
    if (diagnostic.code == ReaderMessages::CountPropertyMissing.code) {
        return AddNote(diagnostic, "'count', the number of the points, is to stand before 'data'. PIEZO begins here.",
                       errors.record.PlaceOf(section->place), section->section->word.size());
    }
    // Either what must come before rows, or all that the section, or a table in it, lacks at its END.
    const bool beforeRows = !open.empty() && open.back().word == "data";
    const bool ownTable = !open.empty() && !beforeRows;
    const std::string missing = Joined(core.missing);
    const bool several = core.missing.size() > 1;
    if (beforeRows) {
        AddNote(diagnostic, missing + (several ? " are" : " is") + " to stand before 'data'.");
    }
    const ReadPlace& begun = ownTable ? open.back().place : section->place;
    const std::string name = ownTable ? "The table" : section->section->name;
    AddNote(diagnostic,
            name + ", which begins here, " + (beforeRows ? "has no " + missing + " yet." : "lacks " + missing + "."),
            errors.record.PlaceOf(begun), ownTable ? open.back().word.size() : section->section->word.size());
    for (const std::string_view word : core.missing) diagnostic.expected.emplace_back(word);
}

void ExplainSecondTable(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const first = errors.CurrentSection()->Find("table");
    if (first == nullptr || ExplainSectionAsProperty(diagnostic, errors)) return;
    AddNote(diagnostic, "An actuator is driven by one table, which was given here.",
            errors.record.PlaceOf(first->place), first->word.size());
}

void ExplainAppending(Diagnostic& diagnostic, ErrorCollector& errors) {
    const PropertyRecord* const mode = errors.CurrentSection()->Find("writemode");
    const PropertyRecord* const format = errors.CurrentSection()->Find("fileformat");
    if (mode == nullptr || format == nullptr) return;
    const auto propose = [&](const PropertyRecord& property, const char* note, const char* value) {
        const InputPlace place = errors.record.PlaceOf(property.valuePlace);
        AddNote(diagnostic, note, place, property.text.size());
        diagnostic.fixes.push_back({place, property.text.size(), value});
    };
    propose(*mode, "Only text files can be appended to. Create or overwrite the file,", "create");
    propose(*format, "or write text.", "txt");
}

void ExplainInit(Diagnostic& diagnostic, ErrorCollector&) {
    AddNote(diagnostic, "'init' is reserved for a later version. Leave it out, with what belongs to it.");
}

}  // namespace orvalo
