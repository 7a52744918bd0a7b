#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <Orvalo3DReader/Model/Bounds.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Model/Point.h>

#include "export/GridRegion.h"
#include "results/ResultsSelection.h"

/// Types of numbers in VTK files.
enum class NumberType { uint8, int64, float64 };
std::size_t SizeOf(NumberType type);
const char* VtkName(NumberType type);

/// Records that are each about a cell, such as the cubes of a model. Of several records for a cell the last one counts.
class CellRecords {
public:
    /// Stores the cells of some successive records: the first of them, how many, and where to.
    using Cells = std::function<void(std::size_t, std::size_t, orvalo::Point*)>;

    /// Notes where portions of the records lie, so that a part of a large grid is found without going through all of
    /// them.
    CellRecords(std::size_t count, Cells cells);

    std::size_t Count() const { return count_; }
    orvalo::Point Cell(std::size_t index) const {
        orvalo::Point cell;
        cells_(index, 1, &cell);
        return cell;
    }

    /// Calls `work` with the first record, the number of records, and their cells, for portions that hold all records
    /// between two planes of constant z, both included, in the order of the records.
    template <class Work>
    void ForEachNear(int firstZ, int lastZ, const Work& work) const {
        std::array<orvalo::Point, atOnce> cells;
        for (std::size_t zone = 0; zone < zones_.size(); ++zone) {
            if (zones_[zone].last < firstZ || zones_[zone].first > lastZ) continue;
            const std::size_t first = zone * atOnce;
            const std::size_t count = std::min(atOnce, count_ - first);
            cells_(first, count, cells.data());
            work(first, count, cells);
        }
    }

    /// Records of a portion: calls cost something, so they are for many records.
    static constexpr std::size_t atOnce = 4096;

private:
    struct Zone {
        int first = std::numeric_limits<int>::max();
        int last = std::numeric_limits<int>::min();
    };

    std::size_t count_;
    Cells cells_;
    std::vector<Zone> zones_;
};

/// A number for each cell.
struct CellField {
    /// Where records give the number.
    struct Layer {
        /// Which of the lists of records.
        std::size_t list = 0;
        /// Stores the numbers of some successive records, as the cells are stored.
        std::function<void(std::size_t, std::size_t, double*)> values;

        double Value(std::size_t record) const {
            double value = 0.0;
            values(record, 1, &value);
            return value;
        }
    };

    std::string name;
    NumberType type = NumberType::float64;
    /// What stands where no record is.
    double none = 0.0;
    /// In the order of the lists; each replaces what those before it gave.
    std::vector<Layer> layers;
};

/// What there is in the cells of a model or of results, for files that show them.
struct CellData {
    orvalo::Bounds box;
    double cellSize = 1.0;
    std::vector<CellRecords> lists;
    std::vector<CellField> fields;

    /// A field and where its numbers go, `SizeOf(field.type)` bytes each.
    struct Target {
        const CellField* field;
        unsigned char* out;
    };
    /// The numbers of some fields in all cells of a slab, in one pass over the records.
    void Fill(const std::vector<Target>& targets, const GridSlab& slab) const;
};

/// Material numbers of the file, which cells exist, temperatures and damping coefficients. `model`, of which maybe the
/// cubes alone were read, must outlive it, as results must in the other case.
CellData CellDataOf(const orvalo::Model& model, bool cubesOnly = false);
/// Which cells exist, and all columns.
CellData CellDataOf(const ResultsSelection& selection, double cellSize);
