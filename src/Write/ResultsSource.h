#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>
#include <Orvalo3DReader/Write/ResultsView.h>

namespace orvalo {

/// Numbers of successive rows of a column: `size` bytes each, `stride` bytes from one to the next. A number of 2 bytes
/// is an index, one of 4 or 8 what its column holds.
struct NumberRun {
    const unsigned char* first = nullptr;
    std::ptrdiff_t stride = 0;
    std::size_t size = 0;
    std::uint64_t rows = 0;

    template <class Number>
    Number At(std::uint64_t row) const {
        Number number;
        std::memcpy(&number, first + static_cast<std::ptrdiff_t>(row) * stride, sizeof number);
        return number;
    }
    double Value(std::uint64_t row) const {
        return size == sizeof(float) ? static_cast<double>(At<float>(row)) : At<double>(row);
    }
    std::int64_t Index(std::uint64_t row) const {
        if (size == sizeof(std::int16_t)) return At<std::int16_t>(row);
        return size == sizeof(std::int32_t) ? At<std::int32_t>(row) : At<std::int64_t>(row);
    }
};

/// Results to be written, wherever they come from.
class ResultsSource {
public:
    explicit ResultsSource(const ResultsView& view);
    explicit ResultsSource(const Results& results);

    /// The numbers of a column from `row` on: those of at least one row. They are there until the next call for that
    /// column.
    NumberRun Values(std::size_t column, std::uint64_t row);
    NumberRun Indices(std::size_t column, std::uint64_t row);

    std::uint64_t rows;
    std::size_t valueColumns;
    std::size_t indexColumns;
    /// Names of the columns, which are the caller's, or none where there are none.
    std::span<const std::string> valueNames;
    std::span<const std::string> indexNames;
    /// Whether the reader has made it, so that its coordinates are of a box that it accepts.
    bool wasRead = false;

private:
    /// One of them is there.
    const ResultsView* view_ = nullptr;
    const ResultsMat* mat_ = nullptr;
    const ResultsTxt* txt_ = nullptr;
    const Results* other_ = nullptr;
    /// A row of results that somebody else has derived, which can only be asked number by number.
    std::vector<double> otherValues_;
    std::vector<int> otherIndices_;
};

}  // namespace orvalo
