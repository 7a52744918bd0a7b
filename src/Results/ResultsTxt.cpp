#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Bytes.h"
#include "Common/ParseNumber.h"
#include "Common/Raise.h"
#include "Results/Queries.h"
#include "Results/RowBlocks.h"
#include "Results/TextLines.h"

namespace orvalo {

namespace {

constexpr std::array<std::string_view, 4> indexNames = {"x", "y", "z", "f"};

std::vector<std::string> SplitAtTabs(std::string_view text) {
    std::vector<std::string> names;
    for (;;) {
        const std::size_t tab = text.find('\t');
        names.emplace_back(text.substr(0, tab));
        if (tab == std::string_view::npos) return names;
        text.remove_prefix(tab + 1);
    }
}

bool BeginsWithIndexColumns(const std::vector<std::string>& names) {
    return names.size() >= indexNames.size() && std::equal(indexNames.begin(), indexNames.end(), names.begin());
}

/// Reads a run of digits, none included, as a 16-bit number that wraps.
const char* ReadIndex(const char* p, short& index) {
    unsigned int value = 0;
    for (; IsDigit(*p); ++p) value = value * 10 + static_cast<unsigned int>(*p - '0');
    index = static_cast<short>(static_cast<std::uint16_t>(value));
    return p;
}

const char* SkipTabs(const char* p) {
    while (*p == '\t') ++p;
    return p;
}

/// Reads the values of a line from `p` on into the places from `value` to `behind`, which becomes the one behind the
/// last value read. Stops before the end of the line when all places are taken, and where there is no number: no later
/// column gets on there either.
const char* ReadValues(const char* p, const char* end, double* value, const double*& behind) {
    const char* start;
    do {
        start = p;
        p = SkipTabs(ParseNumber(p, end, *value++));
    } while (p != end && p != start && value != behind);
    behind = value;
    return p;
}

}  // namespace

struct ResultsTxt::Storage : QueryRules {
    double Value(unsigned int col, std::uint32_t row) const { return values.At(col, row); }

    unsigned int line = 0;
    std::vector<std::string> names;
    RowBlocks<short> indices;
    RowBlocks<double> values;
};

ResultsTxt::ResultsTxt(const std::string& fileName) : Results(fileName), storage_(std::make_unique<Storage>()) {}

ResultsTxt::~ResultsTxt() = default;

const std::vector<std::string>& ResultsTxt::ColumnNames() const {
    return storage_->names;
}

void ResultsTxt::ReadHeader(const TextLine& line) {
    Storage& s = *storage_;
    s.line = 1;
    if (!line.newline) ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
    s.names = SplitAtTabs({line.begin, static_cast<std::size_t>(line.end - line.begin)});
    s.indexColumns = BeginsWithIndexColumns(s.names) ? static_cast<unsigned int>(indexNames.size()) : 0;
    s.valueColumns = static_cast<unsigned int>(s.names.size()) - s.indexColumns;
    if (s.valueColumns == 0)
        ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
    s.indices.SetColumns(s.indexColumns);
    s.values.SetColumns(s.valueColumns);
}

void ResultsTxt::ReadData(const TextLine& line) {
    Storage& s = *storage_;
    const unsigned int columns = s.indexColumns + s.valueColumns;
    const auto lineNumber = static_cast<int>(++s.line);
    const char* p = line.begin;
    unsigned int count = 0;
    // A token that is no number takes up a column and no character, so that the next column begins at the same place.
    // A newline on its own is such a token.
    bool more = line.Length() > 0;
    for (short* index = s.indices.NextRow(); more && count < s.indexColumns; ++count) {
        p = ReadIndex(p, *index++);
        if (p == line.end && !line.newline) {
            ORVALO_RAISE(ResultsTxt, ReaderMessages::ErrorReadingResultsFile, Quoted(FileName()).c_str());
        }
        p = SkipTabs(p);
        more = p != line.end;
    }
    if (more) {
        double* const values = s.values.NextRow();
        const double* behind = values + s.valueColumns;
        p = ReadValues(p, line.end, values, behind);
        if (p != line.end) ORVALO_RAISE(ResultsTxt, ReaderMessages::TooManyColumnsTxt, lineNumber);
        count += static_cast<unsigned int>(behind - values);
    }
    if (count < columns) {
        ORVALO_RAISE(ResultsTxt, ReaderMessages::NotEnoughColumnsTxt, static_cast<int>(columns - count), lineNumber);
    }
    if (!s.indices.AppendRow() || !s.values.AppendRow()) ORVALO_RAISE(ResultsTxt, ReaderMessages::OutOfMemory);
    ++s.rowCount;
}

void ResultsTxt::Finalize(StopFlag stop) {
    const Storage& s = *storage_;
    if (s.indexColumns == 0) return;
    std::vector<CoordinateRun> runs;
    const std::size_t perBlock = s.indices.RowsPerBlock();
    for (std::size_t row = 0; row < s.rowCount; row += perBlock) {
        const short* const x = s.indices.Block(row / perBlock);
        runs.push_back({x, x + 1, x + 2, s.indexColumns, std::min(perBlock, s.rowCount - row)});
    }
    if (!storage_->lookup.Build(runs, stop)) ORVALO_RAISE(ResultsTxt, ReaderMessages::OutOfMemory);
}

bool ResultsTxt::ValuesDefined() const {
    return storage_->rowCount > 0;
}
bool ResultsTxt::IndicesDefined() const {
    return storage_->rowCount > 0;
}

int ResultsTxt::IndexGet(unsigned int col, unsigned int row) const {
    return storage_->indexColumns == 0 ? 0 : storage_->indices.At(col, row);
}

double ResultsTxt::ValueGet(unsigned int col, int x, int y, int z) const {
    return UncheckedValue(*storage_, col, x, y, z);
}

double ResultsTxt::ValueGet(unsigned int col, unsigned int row) const {
    return storage_->Value(col, row);
}

double ResultsTxt::ExValueGet(unsigned int col, int x, int y, int z) const {
    return CheckedValue(*storage_, module::ResultsTxt, col, x, y, z);
}

double ResultsTxt::ExValueGet(unsigned int col, unsigned int row) const {
    return CheckedValue(*storage_, module::ResultsTxt, col, row);
}

double ResultsTxt::SafeValueGet(unsigned int col, int x, int y, int z, double def) const {
    return ValueOr(def, *storage_, col, x, y, z);
}

double ResultsTxt::SafeValueGet(unsigned int col, unsigned int row, double def) const {
    return ValueOr(def, *storage_, col, row);
}

unsigned int ResultsTxt::RowCount() const {
    return storage_->rowCount;
}
unsigned int ResultsTxt::ValuesColCount() const {
    return storage_->valueColumns;
}
unsigned int ResultsTxt::IndicesColCount() const {
    return storage_->indexColumns;
}

}  // namespace orvalo
