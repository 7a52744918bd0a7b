#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Model/Model.h>

#include "Check/CellOccupancy.h"
#include "Check/ErrorCollector.h"
#include "Check/RowPlaces.h"

/// What warnings are made of, and the functions that make those of one subject each.
namespace orvalo {

/// Cells of a section with bulk rows, as far as they were read.
struct GridPart {
    const SectionRecord* section = nullptr;
    SurveyedCells cells;
};

/// The model, what was read where, and the diagnostics that warnings join.
class Warnings {
public:
    Warnings(const Model& theModel, const CheckOptions& theOptions, ErrorCollector& found);

    /// Adds a warning about `length` bytes. What it gives may be added to until the next one.
    Diagnostic& Add(const char* rule, const ReadPlace& place, std::uint64_t length, std::string message);
    /// The same about the token at the place.
    Diagnostic& AddAt(const char* rule, const ReadPlace& place, std::string message);
    /// The same about the word of a section.
    Diagnostic& AddAt(const char* rule, const SectionRecord& section, std::string message);
    void AddNote(Diagnostic& diagnostic, std::string message, const ReadPlace& place);

    const ReadingRecord& Record() const { return found_.record; }
    /// The text of the token at the place; nothing where the file cannot be read again.
    std::string TokenAt(const ReadPlace& place);
    /// The bytes of a property's value, from its first token to its last one.
    std::uint64_t ValueLength(const PropertyRecord& property);
    /// Whether anything was wrong with the file: what seems to be missing may then just not have been understood.
    bool AnyError() const { return found_.ErrorCount() > 0; }
    std::vector<PlacedDiagnostic>& Diagnostics() { return found_.diagnostics; }

    /// Sections of a kind that were read well and are not switched off.
    std::vector<const SectionRecord*> Sections(std::string_view word) const;
    /// Those of actuators, with what they define; none where an error keeps the two from being told together.
    std::vector<std::pair<const SectionRecord*, const Actuator*>> Actuators() const;

    const Model& model;
    const CheckOptions& options;
    RowPlaces rows;
    /// CUBES and DAMPING, if rows of them were read; the last DAMPING counts.
    std::vector<GridPart> grid;
    /// Whether there is a grid, and all of it was understood.
    bool gridIsWhole = false;

private:
    void FindGrid();

    ErrorCollector& found_;
};

/// Warnings about rows of a section: so many, then one that tells how many more there are.
class RowWarnings {
public:
    RowWarnings(Warnings& warnings, const char* rule, const SectionRecord& section, bool endsWithNumber)
        : warnings_(warnings), rule_(rule), section_(section), endsWithNumber_(endsWithNumber) {}

    /// Adds one about a row, from 0, with what `message` gives; null if there are enough. Rows come in their order.
    template <class Message>
    Diagnostic* Add(std::uint64_t row, const Message& message) {
        return count_++ > warnings_.options.perSection ? nullptr : Tell(row, message());
    }
    /// To be called last: tells how many there were in all.
    void End(std::uint64_t count);
    void End() { End(count_); }

private:
    Diagnostic* Tell(std::uint64_t row, std::string message);

    Warnings& warnings_;
    const char* rule_;
    const SectionRecord& section_;
    bool endsWithNumber_;
    std::uint64_t count_ = 0;
    std::optional<std::size_t> more_;
};

/// Whether a section that was read well counts.
bool IsEnabled(const SectionRecord& section);
/// The ID that a number is taken for.
int TakenID(const PropertyRecord& id);
/// The ID of a section; 0 for none.
int IdOf(const SectionRecord& section);
std::string Shown(const Point& point);
/// A number with so many digits that count.
std::string Shown(double number, int digits);

void WarnOfRows(Warnings& warnings);
void WarnOfPositions(Warnings& warnings);
void WarnOfMaterials(Warnings& warnings);
void WarnOfExcitation(Warnings& warnings);
void WarnOfOutputs(Warnings& warnings);
void WarnOfNumbers(Warnings& warnings);

}  // namespace orvalo
