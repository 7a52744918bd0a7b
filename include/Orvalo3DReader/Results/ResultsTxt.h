#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/ColumnRun.h>
#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

class StopFlag;
struct TextLine;
struct TextProgress;
class TextLines;

/// Results read from tab-separated text. Made by ResultsReader. The queries throw as Results says.
class ORVALO3DREADER_EXPORT ResultsTxt : public Results {
public:
    /// An object without rows and columns.
    explicit ResultsTxt(const std::string& fileName);
    ResultsTxt(const ResultsTxt&) = delete;
    ResultsTxt& operator=(const ResultsTxt&) = delete;
    ~ResultsTxt() override;

    /// The names in the file's first line, in order: those of the index columns, if there are any, then those of the
    /// value columns.
    const std::vector<std::string>& ColumnNames() const;

    bool ValuesDefined() const override;
    /// Also true in a file without index columns that has rows.
    bool IndicesDefined() const override;
    /// 0 in a file without index columns.
    int IndexGet(unsigned int col, unsigned int row) const override;
    double ValueGet(unsigned int col, int x, int y, int z) const override;
    double ValueGet(unsigned int col, unsigned int row) const override;
    /// Throws XOutOfRange for every cube in a file without index columns.
    double ExValueGet(unsigned int col, int x, int y, int z) const override;
    double ExValueGet(unsigned int col, unsigned int row) const override;
    double SafeValueGet(unsigned int col, int x, int y, int z, double def) const override;
    double SafeValueGet(unsigned int col, unsigned int row, double def) const override;
    unsigned int RowCount() const override;
    unsigned int ValuesColCount() const override;
    /// 4 (x, y, z, f) or 0.
    unsigned int IndicesColCount() const override;

    /// Where the values of a column lie, from the first row to the last: in runs of as many rows as fill a MiB or half
    /// of it. Throws InvalidColNumber.
    std::vector<ColumnRun<double>> ValueRuns(unsigned int col) const;
    /// The same for a column of indices.
    std::vector<ColumnRun<short>> IndexRuns(unsigned int col) const;

private:
    friend class ResultsTxtReader;
    friend class ResultsSource;
    struct Storage;

    /// The entry of a column in a row, from which on the next rows lie at equal distances, and how many do, that one
    /// included. Not checked.
    const double* ValueRun(unsigned int column, unsigned int row, unsigned int& rows) const;
    const short* IndexRun(unsigned int column, unsigned int row, unsigned int& rows) const;

    /// Takes the columns from the first line. Throws ErrorReadingResultsFile and OutOfMemory.
    void ReadHeader(const TextLine& line);
    /// Appends a further line as a row. Throws TooManyColumnsTxt, NotEnoughColumnsTxt, ErrorReadingResultsFile and
    /// OutOfMemory.
    void ReadData(const TextLine& line);
    /// Appends further lines as rows with a team of threads, as far as that goes, none of them, for certain, longer
    /// than `longestRow`. Returns how many blocks it has read whole.
    std::uint64_t ReadAhead(TextLines& lines, std::size_t longestRow, unsigned int team, TextProgress& progress,
                            StopFlag stop);
    /// Makes the queries by cube possible after the last line. Throws OutOfMemory and Stopped.
    void Finalize(StopFlag stop, unsigned int threads);

    std::unique_ptr<Storage> storage_;
};

}  // namespace orvalo
