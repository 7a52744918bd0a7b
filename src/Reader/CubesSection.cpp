#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "Common/Buffers.h"
#include "Common/PageCommitter.h"
#include "Common/Publish.h"
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

/// The place in the grid where rows are stored, which moves on with each.
struct CubePlace {
    CubePlace() = default;
    CubePlace(unsigned char* firstRecord, double* firstTemperature, std::uint64_t first)
        : row(first),
          record(firstRecord + first * cubeStride),
          temperature(firstTemperature == nullptr ? nullptr : firstTemperature + first) {}

    std::uint64_t row = 0;
    unsigned char* record = nullptr;
    double* temperature = nullptr;
    RowBounds bounds;
};

/// Stores rows of the common kind for as long as they follow one another, up to row `limit`, and calls `told(row)`
/// after each. Returns whether the last one was complete: false when its temperature is still to be read. Inlined by
/// force, for what PlainRows says of its members.
template <bool withTemperatures, class Told>
[[gnu::always_inline]] inline bool StorePlainRows(PlainRows<4>& rows, const BulkMaterials& materials,
                                                  std::uint64_t limit, CubePlace& place, const Told& told) {
    // What changes with each row is kept out of memory that the records might overlap.
    CubePlace own = place;
    bool complete = true;
    while (complete && own.row < limit && rows.Look() && materials.Known(rows.Material())) {
        const std::uint64_t packed = WithMaterial(rows.row, materials[rows.Material()]);
        StoreCube(own.record, packed);
        own.record += cubeStride;
        own.bounds.Add(packed);
        rows.Accept();
        if constexpr (withTemperatures) {
            complete = rows.TakeNumber(*own.temperature);
            if (!complete) break;
            ++own.temperature;
        }
        told(++own.row);
    }
    place = own;
    return complete;
}

/// The buffers of the grid.
class CubeBuffers {
public:
    explicit CubeBuffers(Cubes& cubes)
        : records(cubes.CubesPtr()),
          temperatures(cubes.TemperaturesPtr()),
          recordPages_(records, cubes.CubesCount() * cubeStride),
          temperaturePages_(temperatures, temperatures == nullptr ? 0 : cubes.CubesCount() * sizeof *temperatures) {}

    CubePlace At(std::uint64_t row) const { return {records, temperatures, row}; }

    /// The rows up to `rows` are about to be stored.
    void Reach(std::uint64_t rows) {
        recordPages_.Reach(rows * cubeStride);
        temperaturePages_.Reach(rows * sizeof *temperatures);
    }

    void Clear(std::uint64_t first, std::uint64_t last) const {
        std::memset(records + first * cubeStride, 0, static_cast<std::size_t>(last - first) * cubeStride);
        if (temperatures != nullptr) std::fill(temperatures + first, temperatures + last, 0.0);
    }

    unsigned char* const records;
    double* const temperatures;

private:
    PageCommitter recordPages_;
    PageCommitter temperaturePages_;
};

/// Plain rows as several threads store them.
template <bool withTemperatures>
struct CubesAhead {
    static constexpr RowLayout layout = withTemperatures ? RowLayout::DecimalLines : RowLayout::NaturalLines;
    using Kept = RowBounds;

    std::uint64_t Read(BulkCursor& cursor, std::uint64_t first, std::uint64_t last, RowBounds& kept) const {
        if (first == last) return first;
        buffers.Reach(last);
        const auto ignored = [](std::uint64_t) {};
        PlainRows<4> rows(cursor);
        CubePlace place = buffers.At(first);
        bool complete = StorePlainRows<withTemperatures>(rows, materials, last - 1, place, ignored);
        if (complete && place.row == last - 1) {
            // What is stored after the last record belongs to another thread.
            std::array<unsigned char, sizeof(std::uint64_t)> record;
            unsigned char* const end = std::exchange(place.record, record.data());
            complete = StorePlainRows<withTemperatures>(rows, materials, last, place, ignored);
            if (complete && place.row == last) std::memcpy(end, record.data(), cubeStride);
        }
        // One of which only the position is plain is left as a whole.
        if (!complete) return Read(cursor, first, place.row, kept);
        kept = place.bounds;
        cursor = rows.Cursor();
        return place.row;
    }

    void Keep(const RowBounds& kept) const { kept.Widen(bounds); }

    void Clear(std::uint64_t first, std::uint64_t last) const { buffers.Clear(first, last); }

    const BulkMaterials& materials;
    Bounds& bounds;
    CubeBuffers& buffers;
};

/// Fills the grid with the rows of a `data` block.
class CubeRows {
public:
    CubeRows(ReaderCore& core, const ModelReading& reading)
        : core_(core),
          materials_(reading.model.materials, reading.cubesOnly),
          modelBounds_(reading.model.bounds),
          progress_(reading.progress),
          count_(reading.model.cubes.CubesCount()),
          buffers_(reading.model.cubes),
          place_(buffers_.At(0)) {}

    CubeRows(const CubeRows&) = delete;
    CubeRows& operator=(const CubeRows&) = delete;
    /// The bounds hold what was stored, also where reading failed thereafter.
    ~CubeRows() { place_.bounds.Widen(modelBounds_); }

    /// Reads what follows, up to the END of the rows.
    void ReadOn() {
        do {
            if (buffers_.temperatures == nullptr) {
                ReadPlainRows<false>();
            } else if (!ReadPlainRows<true>()) {
                ReadTemperature();
            }
        } while (ReadRow());
        CloseBulkRows(core_, place_.row, count_);
    }

    bool Full() const { return place_.row == count_; }

    /// Leaves out a row, of which something may be stored.
    void PassOver() { MoveTo(place_.row + 1); }

private:
    void MoveTo(std::uint64_t row) {
        const RowBounds bounds = place_.bounds;
        place_ = buffers_.At(row);
        place_.bounds = bounds;
    }

    /// Not for each row that is not plain: in what is left of a buffer there are ever fewer.
    void CommitFor(std::uint64_t rows) {
        if (rows > reached_) buffers_.Reach(reached_ = rows);
    }

    /// Reads rows of the common kind for as long as they follow one another. As StorePlainRows.
    template <bool withTemperatures>
    bool ReadPlainRows() {
        const std::uint64_t limit = std::min(count_, core_.rowLimit);
        const CubesAhead<withTemperatures> ahead{materials_, modelBounds_, buffers_};
        MoveTo(ReadRowsAhead(core_, ahead, place_.row, limit, progress_));
        const BulkCursor cursor(core_.lexer);
        CommitFor(std::min(limit, place_.row + static_cast<std::uint64_t>(cursor.end - cursor.at) / shortestRow));
        PlainRows<4> rows(cursor);
        unsigned long long* const progress = progress_;
        const bool complete = StorePlainRows<withTemperatures>(
            rows, materials_, limit, place_, [progress](std::uint64_t row) { Publish(progress, row); });
        rows.Cursor().Commit(core_.lexer);
        return complete;
    }

    /// Reads a row of any kind; returns whether there was one.
    bool ReadRow() {
        BulkPosition position;
        if (!ReadBulkPosition(core_, place_.row, count_, position)) return false;
        const std::uint64_t packed = PackCube(position.x, position.y, position.z, materials_.Read(core_));
        StoreCube(place_.record, packed);
        place_.record += cubeStride;
        place_.bounds.Add(packed);
        if (buffers_.temperatures != nullptr) {
            ReadTemperature();
        } else {
            Publish(progress_, ++place_.row);
        }
        return true;
    }

    /// Reads the temperature of the row whose cube was stored last, and with it ends the row.
    void ReadTemperature() {
        core_.row = place_.row + 1;
        core_.NextToken();
        if (core_.token.type != TokenType::Number) {
            ORVALO_RAISE(SectionReader, ReaderMessages::TemperatureValueExpected);
        }
        *place_.temperature++ = core_.token.value;
        Publish(progress_, ++place_.row);
    }

    ReaderCore& core_;
    BulkMaterials materials_;
    Bounds& modelBounds_;
    unsigned long long* progress_;
    std::uint64_t count_;
    CubeBuffers buffers_;
    CubePlace place_;
    std::uint64_t reached_ = 0;

    /// Of four numbers and what is between them.
    static constexpr std::uint64_t shortestRow = 8;
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
    core.Attempt([&] { ModelAccess::AllocCubes(cubes, CountInMemory(reading.count), reading.withTemperatures); });
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
