#include <atomic>
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

constexpr const char* keywords = "end.count.format.data.init.";
enum Keyword { End, Count, Format, Data, Init };

/// Fills the grid with the rows of a `data` block.
class CubeRows {
public:
    CubeRows(ReaderCore& core, Model& model, const GridReading& reading)
        : core_(core),
          materials_(model.materials, reading.cubesOnly),
          progress_(reading.progress),
          count_(model.cubes.CubesCount()),
          record_(model.cubes.CubesPtr()),
          temperature_(model.cubes.TemperaturesPtr()) {}

    void Read(Bounds& bounds) {
        do {
            ReadPlainRows();
        } while (ReadRow());
        CloseBulkRows(core_, read_, count_);
        bounds_.Widen(bounds);
    }

private:
    /// Reads rows of the common kind for as long as they follow one another.
    void ReadPlainRows() {
        if (temperature_ != nullptr) {
            while (read_ < count_ && ReadPlainCell()) {
                ReadTemperature();
                Counted();
            }
            return;
        }
        PlainRows<4> rows(core_.lexer.Current());
        while (read_ < count_ && StorePlainCell(rows)) Counted();
        rows.Commit();
    }

    bool ReadPlainCell() {
        PlainRows<4> rows(core_.lexer.Current());
        const bool found = StorePlainCell(rows);
        rows.Commit();
        return found;
    }

    bool StorePlainCell(PlainRows<4>& rows) {
        if (!rows.Look() || !materials_.Known(rows.values[3])) return false;
        Store(rows.values[0], rows.values[1], rows.values[2], materials_[rows.values[3]]);
        rows.Accept();
        return true;
    }

    /// Reads a row of any kind; returns whether there was one.
    bool ReadRow() {
        BulkPosition position;
        if (!ReadBulkPosition(core_, read_, count_, position)) return false;
        Store(position.x, position.y, position.z, materials_.Read(core_));
        if (temperature_ != nullptr) ReadTemperature();
        Counted();
        return true;
    }

    void Store(std::uint32_t x, std::uint32_t y, std::uint32_t z, unsigned int material) {
        const std::uint64_t packed = PackCube(x, y, z, material);
        StoreCube(record_, packed);
        record_ += cubeStride;
        bounds_.Add(packed);
    }

    void ReadTemperature() {
        core_.row = read_ + 1;
        core_.NextToken();
        if (core_.token.type != TokenType::Number) {
            ORVALO_RAISE(SectionReader, ReaderMessages::TemperatureValueExpected);
        }
        *temperature_++ = core_.token.value;
    }

    void Counted() {
        ++read_;
        // Not to be gathered into one store at the end: the caller watches it from another thread.
        if (progress_ != nullptr) std::atomic_ref(*progress_).store(read_, std::memory_order_relaxed);
    }

    ReaderCore& core_;
    BulkMaterials materials_;
    RowBounds bounds_;
    unsigned long long* progress_;
    std::uint64_t count_;
    std::uint64_t read_ = 0;
    unsigned char* record_;
    double* temperature_;
};

bool ReadFormat(const ReaderCore& core) {
    const auto format = core.Truncated();
    if (!format || *format < 0 || *format > 1) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidCubesFormat);
    return *format == 1;
}

void CheckPrerequisites(bool countGiven, bool formatGiven) {
    if (!countGiven) ReaderCore::RaiseObligatoryMissing("Count");
    if (!formatGiven) ReaderCore::RaiseObligatoryMissing("Format");
}

}  // namespace

void ReadCubesSection(ReaderCore& core, Model& model, const GridReading& reading) {
    std::optional<std::uint64_t> count;
    std::optional<bool> withTemperatures;
    bool dataGiven = false;
    for (;;) {
        core.NextToken();
        switch (core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword)) {
            case Count:
                core.NextValue();
                count = ReadBulkCount(core, std::numeric_limits<std::int64_t>::max());
                break;
            case Format:
                core.NextValue();
                withTemperatures = ReadFormat(core);
                break;
            case Data:
                CheckPrerequisites(count.has_value(), withTemperatures.has_value());
                ModelAccess::AllocCubes(model.cubes, *count, *withTemperatures);
                CubeRows(core, model, reading).Read(model.bounds);
                dataGiven = true;
                break;
            case Init:
                ORVALO_RAISE(SectionReader, ReaderMessages::UnsupportedInitValues);
            default:
                CheckPrerequisites(count.has_value(), withTemperatures.has_value());
                if (!dataGiven) ReaderCore::RaiseObligatoryMissing("Data");
                return;
        }
    }
}

}  // namespace orvalo
