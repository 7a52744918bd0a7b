#include <algorithm>
#include <limits>

#include "Common/PageCommitter.h"
#include "Common/Publish.h"
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

/// Fills the grid with the rows of a `data` block.
class CubeRows {
public:
    CubeRows(ReaderCore& core, const ModelReading& reading)
        : core_(core),
          materials_(reading.model.materials, reading.cubesOnly),
          modelBounds_(reading.model.bounds),
          progress_(reading.progress),
          count_(reading.model.cubes.CubesCount()),
          firstRecord_(reading.model.cubes.CubesPtr()),
          firstTemperature_(reading.model.cubes.TemperaturesPtr()),
          record_(firstRecord_),
          temperature_(firstTemperature_),
          recordPages_(firstRecord_, count_ * cubeStride),
          temperaturePages_(firstTemperature_, firstTemperature_ == nullptr ? 0 : count_ * sizeof *temperature_) {}

    CubeRows(const CubeRows&) = delete;
    CubeRows& operator=(const CubeRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~CubeRows() { bounds_.Widen(modelBounds_); }

    /// Reads what follows, up to the END of the rows.
    void ReadOn() {
        do {
            if (temperature_ == nullptr) {
                ReadPlainRows<false>();
            } else if (!ReadPlainRows<true>()) {
                ReadTemperature();
            }
        } while (ReadRow());
        CloseBulkRows(core_, read_, count_);
    }

    bool Full() const { return read_ == count_; }

    /// Leaves out a row, of which something may be stored.
    void PassOver() {
        ++read_;
        record_ = firstRecord_ + read_ * cubeStride;
        if (temperature_ != nullptr) temperature_ = firstTemperature_ + read_;
    }

private:
    /// Reads rows of the common kind for as long as they follow one another. Returns whether the last one was complete:
    /// false when its temperature is still to be read. What changes with each row is kept out of memory that the
    /// records might overlap.
    template <bool withTemperatures>
    bool ReadPlainRows() {
        CommitPages();
        PlainRows<4> rows(core_.lexer);
        const std::uint64_t limit = std::min(count_, core_.rowLimit);
        unsigned long long* const progress = progress_;
        std::uint64_t read = read_;
        unsigned char* record = record_;
        double* temperature = temperature_;
        RowBounds bounds = bounds_;
        bool complete = true;
        while (complete && read < limit && rows.Look() && materials_.Known(rows.Material())) {
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

    /// Commits what the text at hand may fill.
    void CommitPages() {
        // Of four numbers and what is between them.
        constexpr std::uint64_t shortestRow = 8;
        const BulkCursor cursor(core_.lexer);
        const std::uint64_t rows = read_ + static_cast<std::uint64_t>(cursor.end - cursor.at) / shortestRow;
        // Not for each row that is not plain: in what is left of a buffer there are ever fewer.
        if (rows <= reached_) return;
        reached_ = rows;
        recordPages_.Reach(rows * cubeStride);
        temperaturePages_.Reach(rows * sizeof *temperature_);
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
    unsigned char* firstRecord_;
    double* firstTemperature_;
    unsigned char* record_;
    double* temperature_;
    PageCommitter recordPages_;
    PageCommitter temperaturePages_;
    std::uint64_t reached_ = 0;
};

bool ReadFormat(const ReaderCore& core) {
    const auto format = core.Truncated();
    if (!format || *format < 0 || *format > 1) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidCubesFormat);
    return *format == 1;
}

struct CubesReading {
    const ModelReading& model;
    std::uint64_t count = 0;
    bool withTemperatures = false;
};

void ReadRows(ReaderCore& core, CubesReading& reading) {
    Cubes& cubes = reading.model.model.cubes;
    core.Attempt([&] { ModelAccess::AllocCubes(cubes, reading.count, reading.withTemperatures); });
    // Without a count, or memory for it, which are errors that reading may go on after, rows are passed over.
    if (reading.count == 0 || cubes.CubesPtr() == nullptr) return core.SkipBlock();
    if (reading.withTemperatures && cubes.TemperaturesPtr() == nullptr) return core.SkipBlock();
    CubeRows rows(core, reading.model);
    ReadAllRows(core, rows, reading.withTemperatures ? 5 : 4);
}

void RefuseInit(ReaderCore&, CubesReading&) {
    ORVALO_RAISE(SectionReader, ReaderMessages::UnsupportedInitValues);
}

constexpr Property<CubesReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"count", "Count", Takes::Value, always,
     [](ReaderCore& core, CubesReading& reading) {
         reading.count = ReadBulkCount(core, std::numeric_limits<std::int64_t>::max());
     }},
    {"format", "Format", Takes::Value, always,
     [](ReaderCore& core, CubesReading& reading) { reading.withTemperatures = ReadFormat(core); }},
    {"data", "Data", Takes::Rows, always, ReadRows},
    {"init", "Init", Takes::Block, optional, RefuseInit},
};
static_assert(IsComplete(properties));

}  // namespace

WordList CubesWords() {
    return properties;
}

void ReadCubesSection(ReaderCore& core, const ModelReading& reading) {
    CubesReading own{reading};
    PropertySet given;
    ReadProperties(core, properties, own, given);
    given.Require(core, properties);
}

}  // namespace orvalo
