#include <limits>
#include <optional>

#include "Common/Publish.h"
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
          modelBounds_(model.bounds),
          progress_(reading.progress),
          count_(model.cubes.CubesCount()),
          record_(model.cubes.CubesPtr()),
          temperature_(model.cubes.TemperaturesPtr()) {}

    CubeRows(const CubeRows&) = delete;
    CubeRows& operator=(const CubeRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~CubeRows() { bounds_.Widen(modelBounds_); }

    void Read() {
        do {
            if (temperature_ == nullptr) {
                ReadPlainRows<false>();
            } else if (!ReadPlainRows<true>()) {
                ReadTemperature();
            }
        } while (ReadRow());
        CloseBulkRows(core_, read_, count_);
    }

private:
    /// Reads rows of the common kind for as long as they follow one another. Returns whether the last one was complete:
    /// false when its temperature is still to be read. What changes with each row is kept out of memory that the
    /// records might overlap.
    template <bool withTemperatures>
    bool ReadPlainRows() {
        PlainRows<4> rows(core_.lexer);
        unsigned long long* const progress = progress_;
        std::uint64_t read = read_;
        unsigned char* record = record_;
        double* temperature = temperature_;
        RowBounds bounds = bounds_;
        bool complete = true;
        while (complete && read < count_ && rows.Look() && materials_.Known(rows.Material())) {
            const std::uint64_t packed = WithMaterial(rows.row, materials_[rows.Material()]);
            StoreCube(record, packed);
            record += cubeStride;
            bounds.Add(packed);
            rows.Accept();
            if constexpr (withTemperatures) {
                complete = rows.TakeNumber(*temperature);
                if (!complete) break;
                ++temperature;
            }
            Publish(progress, ++read);
        }
        rows.Commit();
        read_ = read;
        record_ = record;
        temperature_ = temperature;
        bounds_ = bounds;
        return complete;
    }

    /// Reads a row of any kind; returns whether there was one.
    bool ReadRow() {
        BulkPosition position;
        if (!ReadBulkPosition(core_, read_, count_, position)) return false;
        const std::uint64_t packed = PackCube(position.x, position.y, position.z, materials_.Read(core_));
        StoreCube(record_, packed);
        record_ += cubeStride;
        bounds_.Add(packed);
        if (temperature_ != nullptr) {
            ReadTemperature();
        } else {
            Publish(progress_, ++read_);
        }
        return true;
    }

    /// Reads the temperature of the row whose cube was stored last, and with it ends the row.
    void ReadTemperature() {
        core_.row = read_ + 1;
        core_.NextToken();
        if (core_.token.type != TokenType::Number) {
            ORVALO_RAISE(SectionReader, ReaderMessages::TemperatureValueExpected);
        }
        *temperature_++ = core_.token.value;
        Publish(progress_, ++read_);
    }

    ReaderCore& core_;
    BulkMaterials materials_;
    Bounds& modelBounds_;
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
                CubeRows(core, model, reading).Read();
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
