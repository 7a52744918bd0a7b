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

/// Reads the cell at the head of a row; returns whether there was one.
bool ReadCell(ReaderCore& core, const BulkMaterials& materials, std::uint64_t read, std::uint64_t count,
              std::uint64_t& packed) {
    if (read < count) {
        PlainRows<4> rows(core.lexer.Current());
        if (rows.Look() && materials.Known(rows.values[3])) {
            packed = PackCube(rows.values[0], rows.values[1], rows.values[2], materials[rows.values[3]]);
            rows.Accept();
            rows.Commit();
            return true;
        }
    }
    BulkPosition position;
    if (!ReadBulkPosition(core, read, count, position)) return false;
    packed = PackCube(position.x, position.y, position.z, materials.Read(core));
    return true;
}

double ReadCoefficient(ReaderCore& core) {
    core.NextToken();
    if (core.token.type != TokenType::Number) ORVALO_RAISE(SectionReader, ReaderMessages::DampingValueExpected);
    return core.token.value;
}

void ReadRows(ReaderCore& core, Model& model, const GridReading& reading) {
    const BulkMaterials materials(model.materials, reading.cubesOnly);
    const std::uint64_t count = model.cubes.DampingCubesCount();
    unsigned char* record = model.cubes.DampingCubesPtr();
    RowBounds bounds;
    std::uint64_t read = 0;
    std::uint64_t packed = 0;
    while (ReadCell(core, materials, read, count, packed)) {
        core.row = read + 1;
        const double coefficient = ReadCoefficient(core);
        StoreCube(record, packed);
        std::memcpy(record + cubeStride, &coefficient, sizeof coefficient);
        record += dampingCubeStride;
        bounds.Add(packed);
        ++read;
    }
    CloseBulkRows(core, read, count);
    bounds.Widen(model.bounds);
}

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
                ReadRows(core, model, reading);
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
