#pragma once

#include <memory>
#include <string>
#include <vector>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/ColumnRun.h>
#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

class StopFlag;

/// Results read from a MATLAB 5.0 MAT-file. Made by ResultsReader. The queries throw as Results says.
class ORVALO3DREADER_EXPORT ResultsMat : public Results {
public:
    /// An object without rows and columns.
    explicit ResultsMat(const std::string& fileName);
    ResultsMat(const ResultsMat&) = delete;
    ResultsMat& operator=(const ResultsMat&) = delete;
    ~ResultsMat() override;

    bool ValuesDefined() const override;
    bool IndicesDefined() const override;
    int IndexGet(unsigned int col, unsigned int row) const override;
    double ValueGet(unsigned int col, int x, int y, int z) const override;
    double ValueGet(unsigned int col, unsigned int row) const override;
    double ExValueGet(unsigned int col, int x, int y, int z) const override;
    double ExValueGet(unsigned int col, unsigned int row) const override;
    double SafeValueGet(unsigned int col, int x, int y, int z, double def) const override;
    double SafeValueGet(unsigned int col, unsigned int row, double def) const override;
    unsigned int RowCount() const override;
    /// At most 9.
    unsigned int ValuesColCount() const override;
    /// At least 3, or 0 in a file without matrices.
    unsigned int IndicesColCount() const override;

    /// Where the values of a column lie: in one run, none without rows. Throws InvalidColNumber.
    std::vector<ColumnRun<double>> ValueRuns(unsigned int col) const;
    /// The same for a column of indices.
    std::vector<ColumnRun<short>> IndexRuns(unsigned int col) const;

private:
    friend class ResultsMatReader;
    struct Storage;

    /// Records the shape of the values matrix. Throws TooManyColumnsMat.
    void DefineValues(unsigned int columns, unsigned int rows);
    /// A zeroed buffer for the values of one column, one per row. Throws OutOfMemory.
    double* AllocateValues(unsigned int column);
    /// Records the shape of the indices matrix and gives a zeroed buffer for it, column after column. Throws
    /// OutOfMemory.
    short* AllocateIndices(unsigned int columns, unsigned int rows);
    /// Makes the queries by cube possible once both matrices are filled. Throws DifferentRowCount, OutOfMemory
    /// and Stopped.
    void Finalize(StopFlag stop, unsigned int threads);

    std::unique_ptr<Storage> storage_;
};

}  // namespace orvalo
