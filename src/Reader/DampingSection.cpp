#include <algorithm>
#include <cstring>
#include <limits>

#include "Common/PageCommitter.h"
#include "Common/Raise.h"
#include "Model/CubeRecords.h"
#include "Reader/BulkRows.h"
#include "Reader/ModelAccess.h"
#include "Reader/PlainRows.h"
#include "Reader/Properties.h"
#include "Reader/RowBounds.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

/// Fills the damping cubes with the rows of a `data` block.
class DampingRows {
public:
    DampingRows(ReaderCore& core, const ModelReading& reading)
        : core_(core),
          materials_(reading.model.materials, reading.cubesOnly),
          modelBounds_(reading.model.bounds),
          count_(reading.model.cubes.DampingCubesCount()),
          record_(reading.model.cubes.DampingCubesPtr()),
          pages_(record_, count_ * dampingCubeStride) {}

    DampingRows(const DampingRows&) = delete;
    DampingRows& operator=(const DampingRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~DampingRows() { bounds_.Widen(modelBounds_); }

    /// Reads what follows, up to the END of the rows.
    void ReadOn() {
        do {
            ReadPlainRows();
        } while (ReadRow());
        CloseBulkRows(core_, read_, count_);
    }

    bool Full() const { return read_ == count_; }

    /// Leaves out a row, of which nothing is stored.
    void PassOver() {
        ++read_;
        record_ += dampingCubeStride;
    }

private:
    /// Reads rows of the common kind for as long as they follow one another.
    void ReadPlainRows() {
        const BulkCursor cursor(core_.lexer);
        // A row takes about as many bytes as its text.
        pages_.Reach(read_ * dampingCubeStride + static_cast<std::size_t>(cursor.end - cursor.at));
        PlainRows<4> rows(core_.lexer);
        const std::uint64_t limit = std::min(count_, core_.rowLimit);
        while (read_ < limit && rows.Look() && materials_.Known(rows.Material())) {
            const std::uint64_t packed = WithMaterial(rows.row, materials_[rows.Material()]);
            rows.Accept();
            double coefficient = 0.0;
            if (!rows.TakeNumber(coefficient)) {
                rows.Commit();
                Store(packed, ReadCoefficient());
                return;
            }
            Store(packed, coefficient);
        }
        rows.Commit();
    }

    /// Reads a row of any kind; returns whether there was one.
    bool ReadRow() {
        BulkPosition position;
        if (!ReadBulkPosition(core_, read_, count_, position)) return false;
        const std::uint64_t packed = PackCube(position.x, position.y, position.z, materials_.Read(core_));
        Store(packed, ReadCoefficient());
        return true;
    }

    double ReadCoefficient() {
        core_.row = read_ + 1;
        core_.NextToken();
        if (core_.token.type != TokenType::Number) ORVALO_RAISE(SectionReader, ReaderMessages::DampingValueExpected);
        return core_.token.value;
    }

    void Store(std::uint64_t packed, double coefficient) {
        StoreCube(record_, packed);
        std::memcpy(record_ + cubeStride, &coefficient, sizeof coefficient);
        record_ += dampingCubeStride;
        bounds_.Add(packed);
        ++read_;
    }

    ReaderCore& core_;
    BulkMaterials materials_;
    Bounds& modelBounds_;
    RowBounds bounds_;
    std::uint64_t count_;
    std::uint64_t read_ = 0;
    unsigned char* record_;
    PageCommitter pages_;
};

struct DampingReading {
    const ModelReading& model;
    std::uint64_t count = 0;
};

void ReadRows(ReaderCore& core, DampingReading& reading) {
    Cubes& cubes = reading.model.model.cubes;
    core.Attempt([&] { ModelAccess::AllocDampingCubes(cubes, reading.count); });
    // Without a count, or memory for it, which are errors that reading may go on after, rows are passed over.
    if (reading.count == 0 || cubes.DampingCubesPtr() == nullptr) return core.SkipBlock();
    DampingRows rows(core, reading.model);
    ReadAllRows(core, rows, 5);
}

constexpr Property<DampingReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"count", "Count", Takes::Value, always,
     [](ReaderCore& core, DampingReading& reading) {
         reading.count = ReadBulkCount(core, std::numeric_limits<std::int64_t>::max());
     }},
    {"data", "Data", Takes::Rows, always, ReadRows},
};
static_assert(IsComplete(properties));

}  // namespace

WordList DampingWords() {
    return properties;
}

void ReadDampingSection(ReaderCore& core, const ModelReading& reading) {
    DampingReading own{reading};
    PropertySet given;
    ReadProperties(core, properties, own, given);
    given.Require(core, properties);
}

}  // namespace orvalo
