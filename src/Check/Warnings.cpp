#include "Check/Warnings.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace orvalo {

Warnings::Warnings(const Model& theModel, const CheckOptions& theOptions, ErrorCollector& found)
    : model(theModel), options(theOptions), rows(found), found_(found) {
    FindGrid();
}

void Warnings::FindGrid() {
    const SectionRecord* cubes = nullptr;
    const SectionRecord* damping = nullptr;
    gridIsWhole = true;
    for (const SectionRecord& section : Record().sections) {
        const bool isCubes = section.section->word == "cubes";
        if (!isCubes && section.section->word != "damping") continue;
        gridIsWhole = gridIsWhole && !section.failed;
        if (isCubes && cubes == nullptr) cubes = &section;
        if (!isCubes) damping = &section;
    }
    // A section may give its count once more after the rows, so that the grid holds fewer.
    const auto add = [this](const SectionRecord* section, CellList list) {
        if (section == nullptr || list.records == nullptr) return;
        list.count = std::min(list.count, section->rowsRead);
        grid.push_back({section, {list, CellSurvey(list)}});
    };
    const Cubes& cells = model.cubes;
    add(cubes, {cells.CubesPtr(), cubeStride, cells.CubesCount()});
    add(damping, {cells.DampingCubesPtr(), dampingCubeStride, cells.DampingCubesCount()});
    gridIsWhole = gridIsWhole &&
                  std::any_of(grid.begin(), grid.end(), [](const GridPart& part) { return part.cells.list.count > 0; });
}

Diagnostic& Warnings::Add(const char* rule, const ReadPlace& place, std::uint64_t length, std::string message) {
    PlacedDiagnostic added;
    added.place = place;
    added.diagnostic.severity = Severity::Warning;
    added.diagnostic.rule = rule;
    added.diagnostic.message = std::move(message);
    added.diagnostic.place = Record().PlaceOf(place);
    added.diagnostic.length = length;
    added.diagnostic.includedFrom = Record().IncludedFrom(place.file);
    found_.diagnostics.push_back(std::move(added));
    return found_.diagnostics.back().diagnostic;
}

Diagnostic& Warnings::AddAt(const char* rule, const ReadPlace& place, std::string message) {
    return Add(rule, place, TokenAt(place).size(), std::move(message));
}

Diagnostic& Warnings::AddAt(const char* rule, const SectionRecord& section, std::string message) {
    return Add(rule, section.place, section.section->word.size(), std::move(message));
}

void Warnings::AddNote(Diagnostic& diagnostic, std::string message, const ReadPlace& place) {
    diagnostic.notes.push_back({std::move(message), Record().PlaceOf(place), TokenAt(place).size()});
}

std::string Warnings::TokenAt(const ReadPlace& place) {
    return std::string(found_.Source().TokenAt(Record().PlaceOf(place)));
}

std::uint64_t Warnings::ValueLength(const PropertyRecord& property) {
    const ReadPlace& first = property.valuePlace;
    const ReadPlace& last = property.endPlace;
    if (first.file != last.file || first.place.line != last.place.line) return TokenAt(first).size();
    return last.place.offset - first.place.offset + TokenAt(last).size();
}

std::vector<const SectionRecord*> Warnings::Sections(std::string_view word) const {
    std::vector<const SectionRecord*> found;
    for (const SectionRecord& section : Record().sections) {
        if (section.section->word == word && !section.failed && IsEnabled(section)) found.push_back(&section);
    }
    return found;
}

std::vector<std::pair<const SectionRecord*, const Actuator*>> Warnings::Actuators() const {
    std::vector<std::pair<const SectionRecord*, const Actuator*>> found;
    const auto readWell = Sections("actuator");
    if (readWell.size() != model.actuators.size()) return found;
    for (std::size_t i = 0; i < readWell.size(); ++i) found.emplace_back(readWell[i], &model.actuators[i]);
    return found;
}

Diagnostic* RowWarnings::Tell(std::uint64_t row, std::string message) {
    const RowPlace place = warnings_.rows.Find(section_, endsWithNumber_, row);
    Diagnostic& added = warnings_.Add(rule_, place.place, place.length, std::move(message));
    added.row = row + 1;
    if (count_ <= warnings_.options.perSection) return &added;
    more_ = warnings_.Diagnostics().size() - 1;
    return nullptr;
}

void RowWarnings::End(std::uint64_t count) {
    if (!more_) return;
    warnings_.Diagnostics()[*more_].diagnostic.message =
        std::to_string(count - warnings_.options.perSection) + " more of these in the rows of this section.";
}

bool IsEnabled(const SectionRecord& section) {
    const PropertyRecord* const enabled = section.Find("enabled");
    return enabled == nullptr || static_cast<std::uint32_t>(enabled->Whole()) == 1;
}

int TakenID(const PropertyRecord& id) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(id.Whole()));
}

int IdOf(const SectionRecord& section) {
    const PropertyRecord* const id = section.Find("id");
    return id == nullptr ? 0 : TakenID(*id);
}

std::string Shown(const Point& point) {
    return std::to_string(point.x) + ' ' + std::to_string(point.y) + ' ' + std::to_string(point.z);
}

std::string Shown(double number, int digits) {
    char text[64];
    const auto [end, error] =
        std::to_chars(std::begin(text), std::end(text), number, std::chars_format::general, digits);
    return {text, end};
}

}  // namespace orvalo
