#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <Orvalo3DReader/Write/WriteResultsTxt.h>

#include "Common/StopFlag.h"
#include "Common/WithinMemory.h"
#include "Results/MatLayout.h"
#include "Write/OutputFile.h"
#include "Write/Progress.h"
#include "Write/Refusal.h"
#include "Write/ResultsRules.h"
#include "Write/ResultsSource.h"
#include "Write/SmallNumbers.h"
#include "Write/TextWriter.h"

namespace orvalo {

namespace {

constexpr std::string_view axes[] = {"x", "y", "z", "f"};
constexpr std::size_t textIndices = std::size(axes);
/// Of a line, its end included.
constexpr std::size_t longestLine = 65535;
constexpr std::size_t longestIndex = 6;
/// A tab after it included. A NaN shows up to 51 bits of payload.
constexpr std::size_t longestValue = longestDecimal + 1;
static_assert(longestValue > std::string_view("-nan(0x7ffffffffffff)").size());

/// The columns of the first line: with coordinates always all four of them.
std::size_t HeaderColumns(const ResultsSource& results) {
    return (results.indexColumns > 0 ? textIndices : 0) + results.valueColumns;
}

std::string HeaderName(const ResultsSource& results, std::size_t column) {
    const std::size_t indices = HeaderColumns(results) - results.valueColumns;
    if (column < indices) return std::string(axes[column]);
    column -= indices;
    return results.valueNames.empty() ? "v" + std::to_string(column + 1) : results.valueNames[column];
}

std::string Header(const ResultsSource& results) {
    std::string line;
    for (std::size_t i = 0; i < HeaderColumns(results); ++i) line += HeaderName(results, i) + '\t';
    // Of several carriage returns before the end of a line the reader drops one.
    const bool endsInReturn = line.ends_with("\r\t");
    line.replace(line.size() - 1, 1, endsInReturn ? "\r\n" : "\n");
    return line;
}

void CheckNames(const ResultsSource& results) {
    for (std::size_t i = 0; i < results.indexNames.size(); ++i) {
        if (results.indexNames[i] != axes[i]) {
            Refuse("Index column ", i + 1, " is named '", results.indexNames[i], "', and is to be '", axes[i], "'");
        }
    }
    std::size_t size = 0;
    bool seemIndices = results.indexColumns == 0 && results.valueColumns >= textIndices;
    for (std::size_t i = 0; i < HeaderColumns(results); ++i) {
        const std::string name = HeaderName(results, i);
        size += name.size() + 1;
        if (size > longestLine) Refuse("The names of all columns take more than 65535 bytes");
        if (i < textIndices && name != axes[i]) seemIndices = false;
        if (name.find_first_of(std::string_view("\t\n\0", 3)) == std::string::npos) continue;
        Refuse("The name '", name.c_str(), "' has a tab, a line end or a NUL, which no name of a column has");
    }
    if (seemIndices) Refuse("The first value columns are named x, y, z and f, which would be read as indices");
    if (const std::string first = HeaderName(results, 0); first.starts_with(mat::headerText)) {
        Refuse("The first name is that of a MAT-file, '", first, "'");
    }
}

void CheckColumns(const ResultsSource& results) {
    constexpr std::uint64_t mostPlainRows = 4096;
    constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20U;
    if (results.valueColumns == 0) Refuse("Results have one value column or more, and these have none");
    if (results.indexColumns != 0 && results.indexColumns != 3 && results.indexColumns != textIndices) {
        Refuse("A text of results has the index columns x, y, z and f, or none, and these have ", results.indexColumns);
    }
    if (results.indexColumns == 0 && results.rows > mostPlainRows) {
        Refuse("A text of results without coordinates has up to 4096 rows, and these have ", results.rows);
    }
    const std::uint64_t rowSize = std::max(results.valueColumns * sizeof(double), std::size_t{8});
    if (rowSize > mebibyte || results.rows > mebibyte / rowSize * 4096) {
        Refuse("A text of results has up to 4096 MiB of values, and these have ", results.rows, " rows of ",
               results.valueColumns);
    }
}

char* WriteNaN(char* p, double value) {
    constexpr std::uint64_t payloadBits = (std::uint64_t{1} << 51U) - 1;
    const std::uint64_t payload = std::bit_cast<std::uint64_t>(value) & payloadBits;
    std::string text = std::signbit(value) ? "-nan" : "nan";
    if (payload != 0) {
        char digits[16];
        text += "(0x";
        text.append(digits, std::to_chars(std::begin(digits), std::end(digits), payload, 16).ptr);
        text += ')';
    }
    return std::copy(text.begin(), text.end(), p);
}

/// Writes a value as the reader, and most programs, take it.
char* WriteValue(char* p, double value) {
    if (std::isfinite(value)) [[likely]] {
        return WriteDecimal(p, value);
    }
    if (std::isnan(value)) return WriteNaN(p, value);
    const std::string_view text = value < 0 ? "-inf" : "inf";
    return std::copy(text.begin(), text.end(), p);
}

/// Makes lines of rows.
class Lines {
public:
    explicit Lines(ResultsSource& results)
        : results_(results),
          indices_(results.indexColumns > 0 ? indexNumbers : 1, '\t'),
          indexRuns_(results.indexColumns),
          valueRuns_(results.valueColumns),
          longest_(textIndices * longestIndex + results.valueColumns * longestValue) {}

    /// What a line may take at most.
    std::size_t Longest() const { return longest_; }

    /// Takes up the numbers from `row` on; returns of how many rows.
    std::uint64_t Load(std::uint64_t row) {
        std::uint64_t rows = std::min(rowPiece, results_.rows - row);
        for (std::size_t i = 0; i < indexRuns_.size(); ++i) {
            rows = std::min(rows, (indexRuns_[i] = results_.Indices(i, row)).rows);
        }
        for (std::size_t i = 0; i < valueRuns_.size(); ++i) {
            rows = std::min(rows, (valueRuns_[i] = results_.Values(i, row)).rows);
        }
        return rows;
    }

    /// Writes a row of those taken up.
    char* Write(char* p, std::uint64_t row) const {
        for (const NumberRun& run : indexRuns_) p = indices_.Write(p, static_cast<std::uint16_t>(run.Index(row)));
        if (indexRuns_.size() == textIndices - 1) p = indices_.Write(p, 0);
        for (const NumberRun& run : valueRuns_) {
            p = WriteValue(p, run.Value(row));
            *p++ = '\t';
        }
        p[-1] = '\n';
        return p;
    }

private:
    static constexpr std::size_t indexNumbers = 65536;

    ResultsSource& results_;
    const SmallNumbers indices_;
    std::vector<NumberRun> indexRuns_;
    std::vector<NumberRun> valueRuns_;
    const std::size_t longest_;
};

/// Where lines may come out too long, makes them all to see.
void CheckLines(ResultsSource& results, StopFlag stop) {
    const std::uint64_t shortest = 2 * HeaderColumns(results);
    if (results.rows > 0 && shortest > longestLine) {
        Refuse("A row of ", results.valueColumns, " values takes ", shortest,
               " bytes or more, and a line has up to 65535");
    }
    Lines lines(results);
    if (lines.Longest() <= longestLine) return;
    const std::unique_ptr<char[]> line(new char[lines.Longest() + decimalRoom]);
    for (std::uint64_t row = 0; row < results.rows;) {
        stop.Check();
        const std::uint64_t rows = lines.Load(row);
        for (std::uint64_t i = 0; i < rows; ++i, ++row) {
            const auto length = static_cast<std::uint64_t>(lines.Write(line.get(), i) - line.get());
            if (length > longestLine) Refuse("Row ", row + 1, " takes ", length, " bytes, and a line has up to 65535");
        }
    }
}

void WriteText(ResultsSource& results, const std::string& path, const WriteOptions& options, StopFlag stop) {
    OutputFile file(path, options.overwrite);
    Progress progress(options.percentWritten, results.rows);
    TextWriter out(file, progress, stop);
    out.Text(Header(results));
    Lines lines(results);
    const std::size_t room = std::min(lines.Longest(), longestLine) + decimalRoom;
    for (std::uint64_t row = 0; row < results.rows;) {
        const std::uint64_t rows = lines.Load(row);
        for (std::uint64_t i = 0; i < rows; ++i) out.Take(lines.Write(out.Room(room), i));
        row += rows;
        out.Done(rows);
    }
    out.Flush();
    file.Finish();
    stop.Check();
    file.MoveIntoPlace();
    progress.Complete();
}

template <class AnyResults>
void Write(const AnyResults& any, const std::string& path, const WriteOptions& options) {
    WithinMemory(module::WriteResults, __LINE__, [&] {
        const StopFlag stop(options.stop, "Writing was stopped.");
        stop.Check();
        ResultsSource results(any);
        CheckShape(results);
        CheckColumns(results);
        CheckNames(results);
        CheckIndices(results, stop);
        CheckLines(results, stop);
        WriteText(results, path, options, stop);
    });
}

}  // namespace

void WriteResultsTxt(const Results& results, const std::string& path, const WriteOptions& options) {
    Write(results, path, options);
}

void WriteResultsTxt(const ResultsView& results, const std::string& path, const WriteOptions& options) {
    Write(results, path, options);
}

}  // namespace orvalo
