#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The results of a simulation: a matrix of values and a matrix of indices with one row per cube. The first three
/// index columns are the cube's coordinates x, y, z.
///
/// Rows and columns count from 0; the column argument comes first. A finished object is never changed by a query,
/// so any number of threads may query one at once.
class ORVALO3DREADER_EXPORT Results {
public:
    /// Results that were read from the file of that name.
    explicit Results(const std::string& fileName);
    /// Copies the file name.
    Results(const Results&) = default;
    /// Copies the file name.
    Results& operator=(const Results&) = default;
    virtual ~Results();

    /// Whether a matrix of values was loaded.
    virtual bool ValuesDefined() const = 0;
    /// Whether a matrix of indices was loaded.
    virtual bool IndicesDefined() const = 0;

    /// An index entry. Not checked.
    virtual int IndexGet(unsigned int col, unsigned int row) const = 0;
    /// A value by cube. Not checked: only for arguments that the checked form accepts.
    virtual double ValueGet(unsigned int col, int x, int y, int z) const = 0;
    /// A value by row. Not checked: only for arguments that the checked form accepts.
    virtual double ValueGet(unsigned int col, unsigned int row) const = 0;
    /// A value by cube. Throws, in this order, InvalidColNumber, XOutOfRange, YOutOfRange, ZOutOfRange outside the
    /// box of all rows, and NoDataFound for a cube that no row covers. Of several rows for a cube the last counts.
    virtual double ExValueGet(unsigned int col, int x, int y, int z) const = 0;
    /// A value by row. Throws InvalidRowNumber, then InvalidColNumber.
    virtual double ExValueGet(unsigned int col, unsigned int row) const = 0;
    /// A value by cube, or `def` where ExValueGet would throw.
    virtual double SafeValueGet(unsigned int col, int x, int y, int z, double def) const = 0;
    /// A value by row, or `def` where ExValueGet would throw.
    virtual double SafeValueGet(unsigned int col, unsigned int row, double def) const = 0;

    /// Number of rows.
    virtual unsigned int RowCount() const = 0;
    /// Number of columns of values.
    virtual unsigned int ValuesColCount() const = 0;
    /// Number of columns of indices.
    virtual unsigned int IndicesColCount() const = 0;

    /// The path that the object was read from.
    const std::string& FileName() const { return fileName_; }

private:
    std::string fileName_;
};

}  // namespace orvalo
