#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>

#include "Check/ErrorCollector.h"
#include "Check/Explanations.h"

// Values that are no numbers, or none that their property takes.

namespace orvalo {

namespace {

constexpr double largestID = std::numeric_limits<std::int32_t>::max();

/// How other languages write a switch.
struct SwitchWord {
    std::string_view word;
    const char* value;
};
constexpr SwitchWord switchWords[] = {
    {"true", "1"}, {"yes", "1"}, {"on", "1"}, {"false", "0"}, {"no", "0"}, {"off", "0"},
};

std::string OpenWord(ErrorCollector& errors) {
    const auto& open = errors.OpenProperties();
    return open.empty() ? std::string() : std::string(open.back().word);
}

/// The number that a section of that word gives a property; nothing where it does not.
std::optional<double> NumberIn(const SectionRecord& section, std::string_view property) {
    const PropertyRecord* const found = section.Find(property);
    if (found == nullptr || found->valueType != TokenType::Number) return std::nullopt;
    return found->value;
}

const SectionRecord* FirstSection(const ReadingRecord& record, std::string_view word) {
    for (const SectionRecord& section : record.sections) {
        if (section.section->word == word) return &section;
    }
    return nullptr;
}

/// A `start` that is too many time steps.
void ExplainStart(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const analysis = FirstSection(errors.record, "analysis");
    const PropertyRecord* const step = analysis == nullptr ? nullptr : analysis->Find("timestep");
    if (step == nullptr) return;
    AddNote(diagnostic,
            step->value > 0.0 ? "With this time step 'start' may be at most " + Shown(errors.Core().range->most) +
                                    " microseconds, which are 2147483647 steps."
                              : "With a time step of 0 there is no 'start' but 0.",
            errors.record.PlaceOf(step->place), step->word.size());
}

/// The actuator whose signal has the most samples.
const SectionRecord* LongestSignal(const ReadingRecord& record, double timeStep, double& samples) {
    const SectionRecord* longest = nullptr;
    samples = 0.0;
    for (const SectionRecord& section : record.sections) {
        const auto duration = NumberIn(section, "duration");
        if (!duration || section.Find("table") != nullptr) continue;
        const double count = std::ceil(*duration / timeStep);
        if (longest != nullptr && !(count > samples)) continue;
        longest = &section;
        samples = count;
    }
    return longest;
}

void ExplainSignal(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const analysis = FirstSection(errors.record, "analysis");
    const PropertyRecord* const step = analysis == nullptr ? nullptr : analysis->Find("timestep");
    if (step == nullptr) return;
    double samples = 0.0;
    const SectionRecord* const actuator = LongestSignal(errors.record, step->value, samples);
    if (actuator == nullptr) return;
    const PropertyRecord* const duration = actuator->Find("duration");
    const InputPlace place = errors.record.PlaceOf(duration->place);
    const InputPlace stepPlace = errors.record.PlaceOf(step->place);
    if (!(step->value > 0.0)) {
        AddNote(diagnostic, "A time step of 0 gives the signals of actuators no end: it must be above 0.", stepPlace,
                step->word.size());
        return AddNote(diagnostic, "This signal is generated, with one sample for each time step.", place,
                       duration->word.size());
    }
    AddNote(diagnostic, "This signal has one sample for each time step: " + Shown(samples) + " of them.", place,
            duration->word.size());
    AddNote(diagnostic, "The time step is given here. Both are in microseconds.", stepPlace, step->word.size());
}

}  // namespace

void ExplainNumber(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainMaterialNumbers(diagnostic, errors)) return;
    const std::string word = OpenWord(errors);
    if (word == "data") return ExplainSamples(diagnostic, errors);
    if (ExplainNoNumber(diagnostic, errors)) return;
    const Token& token = errors.Core().token;
    if (token.type == TokenType::Keyword && (token.text == "inf" || token.text == "infinity" || token.text == "nan")) {
        return AddNote(diagnostic, "Only decimal numbers can be written, such as 1e300.");
    }
    AddNote(diagnostic, "The value of '" + word + "' is a decimal number, such as 0.5 or 1e-3.");
}

void ExplainRange(Diagnostic& diagnostic, ErrorCollector& errors) {
    const auto& range = errors.Core().range;
    if (!range) return;
    if (std::isfinite(range->most)) return ExplainStart(diagnostic, errors);
    if (ExplainCommaAfter(diagnostic, errors)) return;
    AddNote(diagnostic, "The value of '" + OpenWord(errors) + "' must be " +
                            (range->leastIncluded ? "at least " : "above ") + Shown(range->least) + '.');
}

void ExplainCount(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainNoNumber(diagnostic, errors)) return;
    const auto& range = errors.Core().range;
    if (!range) return;
    const bool limited = range->most <= std::numeric_limits<std::uint32_t>::max();
    AddNote(diagnostic, "'count' is a whole number " +
                            (limited ? "from 1 to " + std::to_string(static_cast<std::uint64_t>(range->most))
                                     : std::string("of at least 1")) +
                            ": how many rows, points or samples follow 'data'.");
}

void ExplainID(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainSectionAsProperty(diagnostic, errors) || ExplainNoNumber(diagnostic, errors)) return;
    AddNote(diagnostic,
            "An ID is a whole number from 1 to " + std::to_string(static_cast<std::int64_t>(largestID)) + '.');
    if (OpenWord(errors) == "data") {
        AddNote(diagnostic, "After 't' come the IDs of three tables, for the components u, v and w.");
    }
}

void ExplainSwitch(Diagnostic& diagnostic, ErrorCollector& errors) {
    const Token& token = errors.Core().token;
    if (ExplainNoNumber(diagnostic, errors)) return;
    AddNote(diagnostic, "0 switches the section off, 1 leaves it on.");
    for (const SwitchWord& known : switchWords) {
        if (token.text == known.word) AddFix(diagnostic, known.value);
    }
}

void ExplainFormat(Diagnostic& diagnostic, ErrorCollector& errors) {
    if (ExplainNoNumber(diagnostic, errors)) return;
    AddNote(diagnostic, "In format 0 a row is 'x y z material'; in format 1 a temperature follows.");
}

void ExplainMemory(Diagnostic& diagnostic, ErrorCollector& errors) {
    const SectionRecord* const section = errors.CurrentSection();
    if (section == nullptr) return ExplainSignal(diagnostic, errors);
    const PropertyRecord* const count = section->Find("count");
    if (count == nullptr) return;
    AddNote(diagnostic, "This count asks for memory for " + Shown(std::trunc(count->value)) + " of them.",
            errors.record.PlaceOf(count->valuePlace),
            errors.Source().TokenAt(errors.record.PlaceOf(count->valuePlace)).size());
}

}  // namespace orvalo
