#include <algorithm>
#include <iterator>
#include <set>

#include "Check/Warnings.h"
#include "Model/CodeWords.h"

namespace orvalo {

namespace {

constexpr int byDefinition = 0;

void WarnOfDirection(Warnings& warnings, const SectionRecord& section, const Actuator& actuator) {
    if (actuator.directionU || actuator.directionV || actuator.directionW) return;
    const std::string message = "The actuator has no direction: it drives none of u, v and w.";
    const PropertyRecord* const direction = section.Find("direction");
    if (direction != nullptr) {
        warnings.AddAt("no-direction", direction->place, message);
    } else {
        warnings.AddAt("no-direction", section, message);
    }
}

void WarnOfTableAndDefinition(Warnings& warnings, const SectionRecord& section, const Actuator& actuator) {
    const PropertyRecord* const table = section.Find("table");
    const PropertyRecord* const input = section.Find("input");
    if (actuator.input != byDefinition || table == nullptr || input == nullptr) return;
    Diagnostic& added = warnings.AddAt("table-with-definition", table->valuePlace,
                                       "The actuator is driven by table " + std::to_string(actuator.tableId) +
                                           ", so that its definition has no effect.");
    warnings.AddNote(added, "The definition is asked for here.", input->valuePlace);
    const std::uint64_t length = warnings.TokenAt(input->valuePlace).size();
    const auto wave = std::find_if(std::begin(actuatorInputs), std::end(actuatorInputs),
                                   [](const CodeWord& word) { return word.code != byDefinition; });
    if (length > 0)
        added.fixes.push_back({warnings.Record().PlaceOf(input->valuePlace), length, std::string(wave->word)});
}

/// How long a period of the signal is, in microseconds, and the property that says so; 0 for one without periods.
std::pair<double, const char*> PeriodOf(const Actuator::Definition& definition) {
    enum Type { FullPulse = 1, HalfPulse, ContinuousWave };
    constexpr int gaussian = 3;
    constexpr double microsecondsPerMillisecond = 1000.0;
    if (definition.waveform == gaussian) return {0.0, ""};
    if (definition.type == FullPulse) return {definition.duration, "duration"};
    if (definition.type == HalfPulse) return {definition.duration * 2, "duration"};
    if (definition.frequency > 0.0) return {microsecondsPerMillisecond / definition.frequency, "frequency"};
    return {0.0, ""};
}

void WarnOfFewSamples(Warnings& warnings, const SectionRecord& section, const Actuator& actuator) {
    const double timeStep = warnings.model.timeStep * 1e6;
    if (actuator.input != byDefinition || actuator.tableId != 0 || !(timeStep > 0.0)) return;
    const auto [period, word] = PeriodOf(actuator.definition);
    const PropertyRecord* const property = section.Find(word);
    if (property == nullptr || !(period / timeStep < 2.0)) return;
    warnings.AddAt("few-samples-per-period", property->valuePlace,
                   "A period of the signal takes " + Shown(period, 4) + " microseconds, which are " +
                       Shown(period / timeStep, 3) +
                       " time steps: at least 2 are needed to tell it from a slower one.");
}

/// The IDs of the tables that actuators name.
std::set<int> NamedTables(const Model& model) {
    std::set<int> named;
    for (const Actuator& actuator : model.actuators) named.insert(actuator.tableId);
    return named;
}

void WarnOfUnusedTable(Warnings& warnings, const PropertyRecord& id, int number, const char* user) {
    warnings.AddAt("unused-table", id.valuePlace,
                   "No " + std::string(user) + " names table " + std::to_string(number) + '.');
}

/// A section that is switched off may name any table when it is on.
void WarnOfUnusedTables(Warnings& warnings) {
    const auto& sections = warnings.Record().sections;
    const auto isOff = [](const SectionRecord& section) {
        return section.section->word == "actuator" && !IsEnabled(section);
    };
    if (warnings.AnyError() || std::any_of(sections.begin(), sections.end(), isOff)) return;
    const std::set<int> named = NamedTables(warnings.model);
    for (const SectionRecord* const section : warnings.Sections("table")) {
        const int id = IdOf(*section);
        if (named.count(id) == 0) WarnOfUnusedTable(warnings, *section->Find("id"), id, "actuator");
    }
}

void WarnOfUnusedOwnTables(Warnings& warnings, const SectionRecord& section, const Piezo& piezo) {
    std::set<int> named;
    for (const auto& [key, cell] : piezo.data.Cells()) named.insert({cell->tableU, cell->tableV, cell->tableW});
    const PropertyRecord* id = nullptr;
    for (const PropertyRecord& property : section.properties) {
        // The properties of a table come before it, for they end before it does.
        if (property.word == "id") id = &property;
        if (property.word != "table" || id == nullptr) continue;
        const int number = TakenID(*id);
        if (named.count(number) == 0) WarnOfUnusedTable(warnings, *id, number, "point of the patch");
    }
}

}  // namespace

void WarnOfExcitation(Warnings& warnings) {
    for (const auto& [section, actuator] : warnings.Actuators()) {
        WarnOfDirection(warnings, *section, *actuator);
        WarnOfTableAndDefinition(warnings, *section, *actuator);
        WarnOfFewSamples(warnings, *section, *actuator);
    }
    WarnOfUnusedTables(warnings);
    const auto patches = warnings.Sections("piezo");
    if (warnings.AnyError() || patches.empty() || warnings.model.piezos.empty()) return;
    WarnOfUnusedOwnTables(warnings, *patches.front(), *warnings.model.piezos.front());
}

}  // namespace orvalo
