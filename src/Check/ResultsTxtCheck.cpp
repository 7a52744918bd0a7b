#include "Check/ResultsTxtCheck.h"

#include <algorithm>
#include <string>

#include "Check/Explanations.h"
#include "Check/ResultsRow.h"
#include "Common/Raise.h"

namespace orvalo {

namespace {

using M = ReaderMessages;

constexpr std::size_t readSize = std::size_t{256} << 10U;
constexpr std::size_t longestLine = 65535;

std::string_view TextOf(const TextLine& line) {
    return {line.begin, static_cast<std::size_t>(line.end - line.begin)};
}

Exception Unreadable(const std::string& path) {
    return ErrorOf(M::ErrorReadingResultsFile, Quoted(path).c_str());
}

}  // namespace

void ResultsTxtCheck::Execute(platform::InputFile& file) {
    TextLines lines(file, {}, readSize, StopFlag(findings_.Options().stop));
    for (TextLine line; !ended_ && !findings_.Ended() && lines.Next(line);) {
        place_ = lines.Place();
        nextPlace_ = lines.NextPlace();
        ++line_;
        if (line_ == 1) {
            ended_ = !CheckHeader(line);
        } else {
            CheckRow(line);
        }
    }
    if (lines.Failed()) {
        Diagnostic* const error = findings_.Add(Unreadable(findings_.Path()), findings_.PlaceAt(lines.NextPlace()));
        if (error != nullptr) AddNote(*error, "The system fails to read on from here.");
    }
    if (findings_.ErrorCount() == 0) box_.AddError(findings_, 0);
    if (!findings_.Options().warnings || findings_.Options().firstOnly || headerTold_) return;
    // Its place is before all others.
    const auto errors = static_cast<std::ptrdiff_t>(findings_.diagnostics.size());
    WarnOfHeader(findings_, header_);
    auto& found = findings_.diagnostics;
    std::rotate(found.begin(), found.begin() + errors, found.end());
}

/// Whether a NUL hides the rest of a line.
bool ResultsTxtCheck::HidesBytes(const TextLine& line) const {
    return !line.newline && nextPlace_.offset - place_.offset > line.Length();
}

bool ResultsTxtCheck::CheckHeader(const TextLine& line) {
    UseColumns(NamedColumns(TextOf(line)));
    header_ = TextOf(line);
    meant_ = FindMeantColumns(header_);
    if (line.newline && columns_.values > 0) return true;
    headerTold_ = true;
    Diagnostic* const error = findings_.Add(Unreadable(findings_.Path()), findings_.PlaceAt(place_), header_.size());
    if (line.newline) {
        AddNote(*error, "After the indices x, y, z and f the first line must name at least one column of values.");
    } else if (HidesBytes(line)) {
        AddNote(*error, "The first line holds a byte of value 0: this is no text.",
                findings_.PlaceAt(place_, header_.size()), 1);
    } else if (header_.size() == longestLine) {
        AddNote(*error, "The first line has more than 65,535 bytes. It must name the columns, separated by tabs.");
    } else {
        AddNote(*error, "The first line must name the columns and end with a line feed; the file ends before.",
                findings_.PlaceAt(place_, header_.size()));
    }
    return false;
}

void ResultsTxtCheck::UseColumns(const TextColumns& columns) {
    columns_ = columns;
    indices_.assign(columns.indices, 0);
    values_.assign(columns.values, 0);
    RowBlocks<short> indices;
    RowBlocks<double> values;
    indices.SetColumns(columns.indices);
    values.SetColumns(columns.values);
    rowLimit_ = std::min(indices.RowLimit(), values.RowLimit());
}

TextRow ResultsTxtCheck::Read(const TextLine& line, const TextColumns& columns) {
    indices_.resize(std::max<std::size_t>(indices_.size(), columns.indices));
    values_.resize(std::max<std::size_t>(values_.size(), columns.values));
    return ReadTextRow(line, indices_.data(), columns.indices, values_.data(), columns.values, runs_);
}

void ResultsTxtCheck::CheckRow(const TextLine& line) {
    const TextRow row = Read(line, columns_);
    if (row.end != RowEnd::Whole) {
        // The pieces of a line that is too long have one mistake.
        if (lastErrorLine_ == place_.line) return;
        lastErrorLine_ = place_.line;
        return AddRowError(line, row.end, static_cast<unsigned int>(columns_.names.size()) - row.columns);
    }
    if (rows_ == rowLimit_) return AddTooManyRows();
    CountRow();
}

void ResultsTxtCheck::AddRowError(const TextLine& line, RowEnd end, unsigned int missing) {
    const auto lineNumber = static_cast<int>(line_);
    const Exception error = end == RowEnd::Unended ? Unreadable(findings_.Path())
                            : end == RowEnd::TooMany
                                ? ErrorOf(M::TooManyColumnsTxt, lineNumber)
                                : ErrorOf(M::NotEnoughColumnsTxt, static_cast<int>(missing), lineNumber);
    Diagnostic* const diagnostic = findings_.Add(error, findings_.PlaceAt(place_), 0, line_ - 1);
    if (diagnostic == nullptr) return;
    ExplainRow(*diagnostic, line, columns_);
    if (ExplainByHeader(*diagnostic, line)) return;
    ExplainEnd(*diagnostic, line);
    const bool counted = diagnostic->notes.size() == 1 && diagnostic->fixes.empty() && end != RowEnd::Unended;
    if (counted && !TextOf(line).empty()) {
        AddNote(*diagnostic, "The columns are named here.", findings_.PlaceAt(TextPlace{}), header_.size());
    }
}

/// Whether the row is right, or nearly so, for the columns that the first line was meant to name. Reading then goes on
/// with these.
bool ResultsTxtCheck::ExplainByHeader(Diagnostic& diagnostic, const TextLine& line) {
    if (!meant_ || meant_->columns.names.size() == columns_.names.size()) return false;
    const bool fits = meant_->line && Read(line, meant_->columns).end == RowEnd::Whole;
    // A file whose rows are separated as its names are has one mistake.
    const bool separated = columns_.names.size() == 1 && CountFields(TextOf(line)) == meant_->columns.names.size();
    if (!fits && !separated) return false;
    diagnostic.notes.clear();
    diagnostic.fixes.clear();
    AddNote(diagnostic, "The first line names " + Counted(columns_.names.size(), "column") + ", likely not the " +
                            std::to_string(meant_->columns.names.size()) + " that were meant.");
    TellHeader(diagnostic);
    if (!fits) {
        AddNote(diagnostic, "The same goes for the numbers of the rows.");
        ended_ = true;
        return true;
    }
    UseColumns(meant_->columns);
    meant_.reset();
    return true;
}

void ResultsTxtCheck::TellHeader(Diagnostic& diagnostic) {
    headerTold_ = true;
    AddNote(diagnostic, meant_->why, findings_.PlaceAt(TextPlace{}, meant_->at), meant_->length);
    if (meant_->line) diagnostic.fixes.push_back({findings_.PlaceAt(TextPlace{}), header_.size(), *meant_->line});
}

/// Tells what cut the line off, where that is no line feed.
void ResultsTxtCheck::ExplainEnd(Diagnostic& diagnostic, const TextLine& line) const {
    const InputPlace end = findings_.PlaceAt(place_, TextOf(line).size());
    if (HidesBytes(line)) {
        AddNote(diagnostic, "A byte of value 0 stands here; it hides the rest of the line.", end, 1);
    } else if (place_.column > 1 || (!line.newline && line.Length() == longestLine)) {
        // Such lines are no rows that somebody wrote.
        diagnostic.fixes.clear();
        AddNote(diagnostic, "The line has more than 65,535 bytes. Every 65,535 are taken for a line of their own.");
    } else if (!line.newline) {
        AddNote(diagnostic, "The file ends in the middle of this row: it may have been cut short.", end);
    }
}

void ResultsTxtCheck::CountRow() {
    for (std::size_t axis = 0; axis < 3 && columns_.indices > 0; ++axis) box_.Include(axis, indices_[axis], place_);
    ++rows_;
}

void ResultsTxtCheck::AddTooManyRows() {
    ended_ = true;
    Diagnostic* const error = findings_.Add(ErrorOf(M::OutOfMemory), findings_.PlaceAt(place_), 0, line_ - 1);
    if (error == nullptr) return;
    const std::string limit = Counted(rowLimit_, "row");
    if (columns_.indices > 0) return AddNote(*error, "A file of these columns may have at most " + limit + ".");
    AddNote(*error, "A file without columns of indices may have at most " + limit + "; here begins the next one.");
    if (meant_) return TellHeader(*error);
    AddNote(*error, "Indices are the first four columns if these are named x, y, z and f.",
            findings_.PlaceAt(TextPlace{}), header_.size());
}

}  // namespace orvalo
