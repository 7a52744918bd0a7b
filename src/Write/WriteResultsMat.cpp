#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include <Orvalo3DReader/Write/WriteResultsMat.h>

#include "Common/StopFlag.h"
#include "Common/WithinMemory.h"
#include "Results/MatLayout.h"
#include "Write/OutputFile.h"
#include "Write/Progress.h"
#include "Write/Refusal.h"
#include "Write/ResultsRules.h"
#include "Write/ResultsSource.h"

namespace orvalo {

namespace {

/// The name of a matrix, its data, and what each number of it takes.
struct Matrix {
    std::array<char, 4> name;
    std::uint32_t dataType;
    std::size_t columns;
    std::uint64_t rows;

    std::uint64_t DataSize() const { return rows * columns * mat::ElementSize(dataType); }
    /// Without the tag of the matrix.
    std::uint64_t Size() const { return mat::fixedSize + nameSize + DataSize(); }

    static constexpr std::uint64_t nameSize = 8;
};

Matrix ValuesOf(const ResultsSource& results) {
    return {{'v', 'a', 'l', '\0'}, mat::miDouble, results.valueColumns, results.rows};
}

Matrix IndicesOf(const ResultsSource& results) {
    return {{'i', 'd', 'x', '\0'}, mat::miInt16, results.indexColumns, results.rows};
}

void CheckSize(const Matrix& matrix) {
    if (matrix.Size() <= std::numeric_limits<std::uint32_t>::max()) return;
    Refuse("The matrix '", matrix.name.data(), "' of ", matrix.rows, " rows and ", matrix.columns, " columns takes ",
           matrix.Size(), " bytes, which 32 bits do not count");
}

void Check(ResultsSource& results, StopFlag stop) {
    CheckShape(results);
    if (results.valueColumns == 0 || results.valueColumns > mat::maxValueColumns) {
        Refuse("A MAT-file of results has 1 to 9 value columns, and these results have ", results.valueColumns);
    }
    if (results.indexColumns < mat::leastIndexColumns) {
        Refuse("A MAT-file of results has the coordinates x, y and z, and these results have ", results.indexColumns,
               " index columns");
    }
    CheckSize(ValuesOf(results));
    CheckSize(IndicesOf(results));
    CheckIndices(results, stop);
}

class MatWriter {
public:
    MatWriter(ResultsSource& results, const std::string& path, const WriteOptions& options, StopFlag stop)
        : results_(results),
          stop_(stop),
          file_(path, options.overwrite),
          progress_(options.percentWritten, ValuesOf(results).DataSize() + IndicesOf(results).DataSize()),
          gathered_(new unsigned char[pieceSize]) {}

    void Write() {
        std::string header(mat::headerText);
        header += ", written by Orvalo3DReader";
        constexpr std::size_t headerTextSize = 116;
        header.resize(headerTextSize, ' ');
        header.resize(mat::headerSize - mat::version.size(), '\0');
        header += mat::version;
        file_.Write(header.data(), header.size());
        WriteMatrix(ValuesOf(results_), &ResultsSource::Values);
        WriteMatrix(IndicesOf(results_), &ResultsSource::Indices);
        file_.Finish();
        stop_.Check();
        file_.MoveIntoPlace();
        progress_.Complete();
    }

private:
    /// So much is written or gathered between looks at the flag.
    static constexpr std::size_t pieceSize = std::size_t{1} << 20U;

    void WriteMatrix(const Matrix& matrix, NumberRun (ResultsSource::*numbers)(std::size_t, std::uint64_t)) {
        const mat::Head head = {mat::miMatrix, static_cast<std::uint32_t>(matrix.Size()), mat::accepted,
                                static_cast<std::uint32_t>(matrix.rows), static_cast<std::uint32_t>(matrix.columns)};
        file_.Write(&head, sizeof head);
        // A name of up to four letters stands in its tag.
        constexpr std::uint32_t nameLength = 3;
        const std::uint32_t words[] = {mat::miInt8 | nameLength << 16U, 0, matrix.dataType,
                                       static_cast<std::uint32_t>(matrix.DataSize())};
        std::array<unsigned char, sizeof words> tags;
        std::memcpy(tags.data(), words, sizeof words);
        std::memcpy(tags.data() + sizeof(std::uint32_t), matrix.name.data(), matrix.name.size());
        file_.Write(tags.data(), tags.size());
        const auto size = static_cast<std::size_t>(mat::ElementSize(matrix.dataType));
        for (std::size_t column = 0; column < matrix.columns; ++column) {
            ForEachRun(numbers, results_, column, pieceSize / size, stop_, [&](const NumberRun& run) {
                if (size == sizeof(double)) {
                    WriteRun<double>(run, [&](std::uint64_t row) { return run.Value(row); });
                } else {
                    WriteRun<std::int16_t>(
                        run, [&](std::uint64_t row) { return static_cast<std::int16_t>(run.Index(row)); });
                }
            });
        }
        Flush();
    }

    /// Numbers that lie as they are to be written go straight to the file, others are gathered.
    template <class Number, class At>
    void WriteRun(const NumberRun& run, const At& at) {
        const bool contiguous = run.size == sizeof(Number) && run.stride == sizeof(Number);
        const auto bytes = static_cast<std::size_t>(run.rows) * sizeof(Number);
        constexpr std::uint64_t fewRows = 4096;
        if (contiguous && run.rows >= fewRows) {
            Flush();
            file_.Write(run.first, bytes);
        } else {
            if (bytes > pieceSize - gatheredSize_) Flush();
            unsigned char* p = gathered_.get() + gatheredSize_;
            for (std::uint64_t row = 0; row < run.rows; ++row, p += sizeof(Number)) {
                const Number number = at(row);
                std::memcpy(p, &number, sizeof number);
            }
            gatheredSize_ += bytes;
        }
        progress_.Add(bytes);
    }

    void Flush() {
        file_.Write(gathered_.get(), gatheredSize_);
        gatheredSize_ = 0;
    }

    ResultsSource& results_;
    const StopFlag stop_;
    OutputFile file_;
    Progress progress_;
    std::unique_ptr<unsigned char[]> gathered_;
    std::size_t gatheredSize_ = 0;
};

template <class AnyResults>
void Write(const AnyResults& any, const std::string& path, const WriteOptions& options) {
    WithinMemory(module::WriteResults, __LINE__, [&] {
        const StopFlag stop(options.stop, "Writing was stopped.");
        stop.Check();
        ResultsSource results(any);
        Check(results, stop);
        MatWriter(results, path, options, stop).Write();
    });
}

}  // namespace

void WriteResultsMat(const Results& results, const std::string& path, const WriteOptions& options) {
    Write(results, path, options);
}

void WriteResultsMat(const ResultsView& results, const std::string& path, const WriteOptions& options) {
    Write(results, path, options);
}

}  // namespace orvalo
