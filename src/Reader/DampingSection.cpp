#include <cstring>
#include <limits>
#include <optional>

#include "Common/Raise.h"
#include "Model/CubeRecords.h"
#include "Reader/BulkRows.h"
#include "Reader/ModelAccess.h"
#include "Reader/PlainRows.h"
#include "Reader/RowBounds.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr const char* keywords = "end.count.data.";
enum Keyword { End, Count, Data };

/// Fills the damping cubes with the rows of a `data` block.
class DampingRows {
public:
    DampingRows(ReaderCore& core, Model& model, const GridReading& reading)
        : core_(core),
          materials_(model.materials, reading.cubesOnly),
          modelBounds_(model.bounds),
          count_(model.cubes.DampingCubesCount()),
          record_(model.cubes.DampingCubesPtr()) {}

    DampingRows(const DampingRows&) = delete;
    DampingRows& operator=(const DampingRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~DampingRows() { bounds_.Widen(modelBounds_); }

    void Read() {
        do {
            ReadPlainRows();
        } while (ReadRow());
        CloseBulkRows(core_, read_, count_);
    }

private:
    /// Reads rows of the common kind for as long as they follow one another.
    void ReadPlainRows() {
        PlainRows<4> rows(core_.lexer);
        while (read_ < count_ && rows.Look() && materials_.Known(rows.Material())) {
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
};

}  // namespace

void ReadDampingSection(ReaderCore& core, Model& model, const GridReading& reading) {
    std::optional<std::uint64_t> count;
    bool dataGiven = false;
    for (;;) {
        core.NextToken();
        switch (core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword)) {
            case Count:
                core.NextValue();
                count = ReadBulkCount(core, std::numeric_limits<std::int64_t>::max());
                break;
            case Data:
                if (!count) ReaderCore::RaiseObligatoryMissing("Count");
                ModelAccess::AllocDampingCubes(model.cubes, *count);
                DampingRows(core, model, reading).Read();
                dataGiven = true;
                break;
            default:
                if (!count) ReaderCore::RaiseObligatoryMissing("Count");
                if (!dataGiven) ReaderCore::RaiseObligatoryMissing("Data");
                return;
        }
    }
}

}  // namespace orvalo
