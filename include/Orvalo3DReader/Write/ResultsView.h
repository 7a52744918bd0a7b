#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

namespace orvalo {

/// Results that lie in memory of the caller's, to be written. The memory must outlive the write, which does not change
/// it.
struct ResultsView {
    /// A column of numbers at equal distances, which need not be aligned. `Kind` is long long for whole numbers and
    /// double for others: what any number of the column is taken as.
    template <class Kind>
    class Column {
    public:
        /// `first` is the number of row 0; each further one lies `stride` bytes after the one before. The stride may be
        /// negative or 0. Whole numbers are signed, of 16 to 64 bits; others are float or double.
        template <class Number>
        Column(const Number* first, std::ptrdiff_t stride = sizeof(Number))  // NOLINT(google-explicit-constructor)
            : first_(first), stride_(stride), size_(sizeof(Number)) {
            static_assert(std::is_integral<Number>::value == std::is_integral<Kind>::value,
                          "a column of the other kind");
            static_assert(std::is_signed<Number>::value && sizeof(Number) >= 2 && sizeof(Number) <= 8,
                          "numbers of that type are not written");
        }

        /// Where the number of row 0 lies.
        const void* First() const { return first_; }
        /// Bytes from each number to the next.
        std::ptrdiff_t Stride() const { return stride_; }
        /// Bytes of a number.
        std::size_t Size() const { return size_; }

    private:
        const void* first_;
        std::ptrdiff_t stride_;
        std::size_t size_;
    };
    /// A column of whole numbers.
    using IndexColumn = Column<long long>;
    /// A column of values.
    using ValueColumn = Column<double>;

    /// Number of rows: of the numbers that each column has.
    std::size_t rows = 0;
    /// Names of the index columns: `x`, `y`, `z` and, if there is a fourth, `f`; or none, which stands for these.
    std::vector<std::string> indexNames;
    /// Names of the value columns; or none, which stands for `v1`, `v2` and so on. MAT-files do not hold them.
    std::vector<std::string> valueNames;
    /// Coordinates x, y, z, then any further ones; or none at all.
    std::vector<IndexColumn> indices;
    /// The values.
    std::vector<ValueColumn> values;
};

}  // namespace orvalo
