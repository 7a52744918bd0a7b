#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

#include "Model/CubeRecords.h"
#include "Write/SectionWriters.h"
#include "Write/SmallNumbers.h"

namespace orvalo {

namespace {

/// Rows between looks at the flag, and those that fit the buffer at once.
constexpr std::size_t piece = 8192;
constexpr std::size_t numbers = std::size_t{std::numeric_limits<short>::max()} + 1;
constexpr std::uint64_t coordinateSigns = 0x0000800080008000U;

/// Records of seven bytes, x, y, z and material, with a number for each that need not be aligned, or none.
struct GridPart {
    std::string_view rowKind;
    std::string_view numberKind;
    const unsigned char* records;
    std::size_t stride;
    std::size_t count;
    const unsigned char* firstNumber;
    std::size_t numberStride;

    /// The record in the low seven bytes of a word; a byte after it may be read.
    std::uint64_t Packed(std::size_t row) const {
        std::uint64_t packed;
        std::memcpy(&packed, records + row * stride, sizeof packed);
        return packed & 0x00FFFFFFFFFFFFFFU;
    }
    double Number(std::size_t row) const {
        double number;
        std::memcpy(&number, firstNumber + row * numberStride, sizeof number);
        return number;
    }
    bool IsZero(std::size_t row) const {
        return Packed(row) == 0 && (firstNumber == nullptr || std::bit_cast<std::uint64_t>(Number(row)) == 0);
    }
};

GridPart CubesOf(const Model& model) {
    const Cubes& cubes = model.cubes;
    return {"Cube",        "temperature",          cubes.CubesPtr(),
            cubeStride,    cubes.Records().size(), reinterpret_cast<const unsigned char*>(cubes.TemperaturesPtr()),
            sizeof(double)};
}

GridPart DampingOf(const Model& model) {
    const Cubes& cubes = model.cubes;
    const unsigned char* const records = cubes.DampingCubesPtr();
    return {"Damping cube",
            "coefficient",
            records,
            dampingCubeStride,
            cubes.DampingRecords().size(),
            records == nullptr ? nullptr : records + cubeStride,
            dampingCubeStride};
}

/// Refuses a row that cannot be written.
void CheckRow(const GridPart& part, const MaterialRepository& materials, std::size_t row) {
    const Subject subject{part.rowKind, static_cast<long long>(row) + 1};
    const std::uint64_t packed = part.Packed(row);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const auto coordinate = static_cast<short>(static_cast<std::uint16_t>(packed >> (16 * axis)));
        if (coordinate < 0)
            Refuse(subject, ": ", std::string_view("xyz").substr(axis, 1), " is ", coordinate,
                   ", and must be 0 or more");
    }
    const auto material = static_cast<int>(packed >> 48U);
    if (material == 0) Refuse(subject, " is of air, and is not one of the last ones, which may be left out");
    if (static_cast<std::size_t>(material) >= materials.Count()) {
        Refuse(subject, ": the model has no material of the vector index ", material);
    }
    if (part.firstNumber != nullptr) CheckNumber(subject, part.numberKind, part.Number(row));
}

/// Whether any row from `begin` to before `end` might have to be refused.
bool AnyDoubtful(const GridPart& part, std::size_t materials, std::size_t begin, std::size_t end) {
    std::uint64_t seen = 0;
    std::uint64_t leastMaterial = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t greatestMaterial = 0;
    for (std::size_t row = begin; row < end; ++row) {
        const std::uint64_t packed = part.Packed(row);
        seen |= packed;
        leastMaterial = std::min(leastMaterial, packed >> 48U);
        greatestMaterial = std::max(greatestMaterial, packed >> 48U);
    }
    bool noNumber = false;
    if (part.firstNumber != nullptr) {
        for (std::size_t row = begin; row < end; ++row) noNumber |= std::isnan(part.Number(row));
    }
    return (seen & coordinateSigns) != 0 || leastMaterial == 0 || greatestMaterial >= materials || noNumber;
}

/// The rows without those at the end that are all zero, as rows that a file left out are.
std::size_t WrittenRows(const GridPart& part, StopFlag stop) {
    std::size_t rows = part.count;
    for (std::size_t looked = 0; rows > 0 && part.IsZero(rows - 1); --rows) {
        if (looked++ % piece == 0) stop.Check();
    }
    return rows;
}

std::size_t CheckPart(const GridPart& part, const MaterialRepository& materials, StopFlag stop) {
    const std::size_t rows = WrittenRows(part, stop);
    stop.CheckEach(piece, rows, [&](std::size_t begin, std::size_t end) {
        if (!AnyDoubtful(part, materials.Count(), begin, end)) return;
        for (std::size_t row = begin; row < end; ++row) CheckRow(part, materials, row);
    });
    return rows;
}

/// A text that is kept for the next row, which often shares it.
struct KeptText {
    char text[decimalRoom];
    std::size_t length = 0;

    /// Writes up to `decimalRoom` bytes.
    template <std::size_t copied>
    char* Write(char* p) const {
        std::memcpy(p, text, copied);
        return p + length;
    }
};

/// Writes rows, each after its x with what the row before had, as long as it is the same.
class RowWriter {
public:
    RowWriter(const GridPart& part, const MaterialRepository& materials)
        : part_(part), materials_(materials), coordinates_(numbers, ' ') {}

    void Write(std::size_t rows, TextWriter& out) {
        for (std::size_t begin = 0; begin < rows; begin += piece) {
            const std::size_t end = std::min(rows, begin + piece);
            char* p = out.Room(piece * longestRow + 2 * decimalRoom);
            p = part_.firstNumber == nullptr ? WritePiece<false>(p, begin, end) : WritePiece<true>(p, begin, end);
            out.Take(p);
            out.Done(end - begin);
        }
    }

private:
    /// Three coordinates of up to five digits, a material of up to three, a number, and what parts them.
    static constexpr std::size_t longestRow = 3 * 6 + 4 + longestDecimal + 1;
    static_assert(piece * longestRow + 2 * decimalRoom <= TextWriter::mostRoom);

    template <bool withNumber>
    char* WritePiece(char* p, std::size_t begin, std::size_t end) {
        const unsigned char* record = part_.records + begin * part_.stride;
        const unsigned char* number = part_.firstNumber + (withNumber ? begin * part_.numberStride : 0);
        for (std::size_t row = begin; row < end; ++row) {
            std::uint64_t packed;
            std::memcpy(&packed, record, sizeof packed);
            record += part_.stride;
            const std::uint64_t tail = packed << 8U >> 24U;
            if (tail != lastTail_) [[unlikely]] {
                KeepTail(tail, withNumber);
            }
            p = coordinates_.Write(p, packed & 0xFFFFU);
            p = tail_.Write<16>(p);
            if constexpr (withNumber) {
                std::uint64_t bits;
                std::memcpy(&bits, number, sizeof bits);
                number += part_.numberStride;
                if (bits != lastNumber_ || number_.length == 0) KeepNumber(bits);
                p = number_.Write<32>(p);
            }
        }
        return p;
    }

    void KeepTail(std::uint64_t tail, bool withNumber) {
        lastTail_ = tail;
        char* p = coordinates_.Write(tail_.text, tail & 0xFFFFU);
        p = coordinates_.Write(p, tail >> 16U & 0xFFFFU);
        p = WriteInteger(p, static_cast<std::uint64_t>(materials_.Vec2File(static_cast<int>(tail >> 32U))));
        *p++ = withNumber ? ' ' : '\n';
        tail_.length = static_cast<std::size_t>(p - tail_.text);
    }

    void KeepNumber(std::uint64_t bits) {
        lastNumber_ = bits;
        char* p = WriteDecimal(number_.text, std::bit_cast<double>(bits));
        *p++ = '\n';
        number_.length = static_cast<std::size_t>(p - number_.text);
    }

    const GridPart part_;
    const MaterialRepository& materials_;
    SmallNumbers coordinates_;
    /// y, z and material; no row has all bits set.
    std::uint64_t lastTail_ = std::numeric_limits<std::uint64_t>::max();
    KeptText tail_;
    std::uint64_t lastNumber_ = 0;
    KeptText number_;
};

void WritePart(const GridPart& part, const MaterialRepository& materials, std::size_t rows, SectionText& text) {
    text.BeginBlock("data");
    RowWriter(part, materials).Write(rows, text.Out());
    text.End();
    text.End();
}

}  // namespace

GridRows CheckGrid(const Model& model, StopFlag stop) {
    const GridPart cubes = CubesOf(model);
    if (cubes.count == 0) Refuse("The model has no cubes");
    return {CheckPart(cubes, model.materials, stop), CheckPart(DampingOf(model), model.materials, stop)};
}

void WriteGrid(const Model& model, const GridRows& rows, SectionText& text) {
    const GridPart cubes = CubesOf(model);
    text.Begin(ReadCubesSection);
    text.Count("count", cubes.count);
    text.Count("format", cubes.firstNumber == nullptr ? 0 : 1);
    WritePart(cubes, model.materials, rows.cubes, text);
    const GridPart damping = DampingOf(model);
    if (damping.count == 0) return;
    text.Begin(ReadDampingSection);
    text.Count("count", damping.count);
    WritePart(damping, model.materials, rows.dampingCubes, text);
}

void CheckSets(const Model& model, StopFlag stop) {
    for (const auto& [id, set] : model.sets) {
        const Subject subject{"Set", id};
        if (set == nullptr || set->points == nullptr || set->count == 0) Refuse(subject, " has no positions");
        CheckId(subject, set->id);
        stop.CheckEach(piece, set->count, [&, number = id, points = set->points](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                const Point& p = points[i];
                if (p.x >= 0 && p.y >= 0 && p.z >= 0) continue;
                Refuse(Subject{"Set", number}, ": position ", i + 1, ", ", p.x, " ", p.y, " ", p.z,
                       ", has a coordinate below 0");
            }
        });
    }
}

void WriteSets(const Model& model, SectionText& text) {
    if (model.sets.empty()) return;
    const SmallNumbers coordinates(numbers, ' ');
    for (const auto& [id, set] : model.sets) {
        text.Begin(ReadSetSection);
        text.Line("id " + std::to_string(id));
        text.Count("count", set->count);
        text.BeginBlock("data");
        for (const Point& point : *set) {
            char* p = text.Out().Room(decimalRoom);
            for (const short coordinate : {point.x, point.y, point.z}) {
                p = coordinates.Write(p, static_cast<std::size_t>(coordinate));
            }
            p[-1] = '\n';
            text.Out().Take(p);
        }
        text.Out().Done(set->count);
        text.End();
        text.End();
    }
}

}  // namespace orvalo
