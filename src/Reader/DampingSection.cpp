#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"
#include "Common/Raise.h"
#include "Model/CubeRecords.h"
#include "Reader/BulkRows.h"
#include "Reader/ModelAccess.h"
#include "Reader/PlainRows.h"
#include "Reader/Properties.h"
#include "Reader/RowBounds.h"
#include "Reader/RowsAhead.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

/// The place among the damping cubes where rows are stored, which moves on with each.
struct DampingPlace {
    void Store(std::uint64_t packed, double coefficient) {
        StoreCube(record, packed);
        std::memcpy(record + cubeStride, &coefficient, sizeof coefficient);
        bounds.Add(packed);
        PassOver();
    }
    void PassOver() {
        record += dampingCubeStride;
        ++row;
    }

    std::uint64_t row = 0;
    unsigned char* record = nullptr;
    RowBounds bounds;
};

/// Stores rows of the common kind for as long as they follow one another, up to row `limit`. Returns the position of
/// a last one whose coefficient is still to be read. Inlined by force, for what PlainRows says of its members.
[[gnu::always_inline]] inline std::optional<std::uint64_t> StorePlainRows(PlainRows<4>& rows,
                                                                          const BulkMaterials& materials,
                                                                          std::uint64_t limit, DampingPlace& place) {
    while (place.row < limit && rows.Look() && materials.Known(rows.Material())) {
        const std::uint64_t packed = WithMaterial(rows.row, materials[rows.Material()]);
        rows.Accept();
        double coefficient = 0.0;
        if (!rows.TakeNumber(coefficient)) return packed;
        place.Store(packed, coefficient);
    }
    return std::nullopt;
}

/// Plain rows as several threads store them.
struct DampingAhead {
    static constexpr RowLayout layout = RowLayout::DecimalLines;
    using Kept = RowBounds;

    std::uint64_t Read(BulkCursor& cursor, std::uint64_t first, std::uint64_t last, RowBounds& kept) const {
        pages.Reach(last * dampingCubeStride);
        PlainRows<4> rows(cursor);
        DampingPlace place{first, records + first * dampingCubeStride, {}};
        // One of which only the position is plain is left as a whole.
        if (StorePlainRows(rows, materials, last, place)) return Read(cursor, first, place.row, kept);
        kept = place.bounds;
        cursor = rows.Cursor();
        return place.row;
    }

    void Keep(const RowBounds& kept) const { kept.Widen(bounds); }

    void Clear(std::uint64_t first, std::uint64_t last) const {
        std::memset(records + first * dampingCubeStride, 0, static_cast<std::size_t>(last - first) * dampingCubeStride);
    }

    const BulkMaterials& materials;
    Bounds& bounds;
    unsigned char* records;
    PageCommitter& pages;
};

/// Fills the damping cubes with the rows of a `data` block.
class DampingRows {
public:
    DampingRows(ReaderCore& core, const ModelReading& reading)
        : core_(core),
          materials_(reading.model.materials, reading.cubesOnly),
          modelBounds_(reading.model.bounds),
          count_(reading.model.cubes.DampingCubesCount()),
          records_(reading.model.cubes.DampingCubesPtr()),
          pages_(records_, static_cast<std::size_t>(count_) * dampingCubeStride),
          place_{0, records_, {}} {}

    DampingRows(const DampingRows&) = delete;
    DampingRows& operator=(const DampingRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~DampingRows() { place_.bounds.Widen(modelBounds_); }

    /// Reads what follows, up to the END of the rows.
    void ReadOn() {
        do {
            ReadPlainRows();
        } while (ReadRow());
        CloseBulkRows(core_, place_.row, count_);
    }

    bool Full() const { return place_.row == count_; }

    /// Leaves out a row, of which nothing is stored.
    void PassOver() { place_.PassOver(); }

private:
    /// Reads rows of the common kind for as long as they follow one another.
    void ReadPlainRows() {
        const std::uint64_t limit = std::min(count_, core_.rowLimit);
        const DampingAhead ahead{materials_, modelBounds_, records_, pages_};
        place_.row = ReadRowsAhead(core_, ahead, place_.row, limit, nullptr);
        place_.record = records_ + place_.row * dampingCubeStride;
        const BulkCursor cursor(core_.lexer);
        // A row takes about as many bytes as its text.
        pages_.Reach(place_.row * dampingCubeStride + static_cast<std::size_t>(cursor.end - cursor.at));
        PlainRows<4> rows(cursor);
        const auto unended = StorePlainRows(rows, materials_, limit, place_);
        rows.Cursor().Commit(core_.lexer);
        if (unended) place_.Store(*unended, ReadCoefficient());
    }

    /// Reads a row of any kind; returns whether there was one.
    bool ReadRow() {
        BulkPosition position;
        if (!ReadBulkPosition(core_, place_.row, count_, position)) return false;
        const std::uint64_t packed = PackCube(position.x, position.y, position.z, materials_.Read(core_));
        place_.Store(packed, ReadCoefficient());
        return true;
    }

    double ReadCoefficient() {
        core_.row = place_.row + 1;
        core_.NextToken();
        if (core_.token.type != TokenType::Number) ORVALO_RAISE(SectionReader, ReaderMessages::DampingValueExpected);
        return core_.token.value;
    }

    ReaderCore& core_;
    BulkMaterials materials_;
    Bounds& modelBounds_;
    std::uint64_t count_;
    unsigned char* records_;
    PageCommitter pages_;
    DampingPlace place_;
};

struct DampingReading {
    const ModelReading& model;
    std::uint64_t count = 0;
};

void ReadRows(ReaderCore& core, DampingReading& reading) {
    Cubes& cubes = reading.model.model.cubes;
    core.Attempt([&] { ModelAccess::AllocDampingCubes(cubes, CountInMemory(reading.count)); });
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
