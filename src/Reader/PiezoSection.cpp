#include <limits>

#include "Common/Raise.h"
#include "Reader/ModelAccess.h"
#include "Reader/Sections.h"
#include "Reader/StartSteps.h"

namespace orvalo {

namespace {

constexpr const char* keywords = "end.id.enabled.position.direction.start.method.amplitude.count.data.table.";
enum Keyword : unsigned int {
    End,
    ID,
    Enabled,
    Position,
    Direction,
    Start,
    Method,
    Amplitude,
    Count,
    Data,
    TableBlock
};

constexpr unsigned int Bit(unsigned int keyword) {
    return 1U << keyword;
}
constexpr unsigned int obligatory = Bit(ID) | Bit(Position) | Bit(Direction) | Bit(Method) | Bit(Data);

/// Passes over the rest of a disabled section, from the current token on. Data and table blocks nest, each with an END
/// of its own.
void SkipSection(ReaderCore& core) {
    for (std::size_t depth = 1;; core.NextToken()) {
        if (core.token.type == TokenType::EndOfFile) {
            ORVALO_RAISE(SectionReader, ReaderMessages::SectionClosingExpected);
        }
        if (core.IsKeyword("table") || core.IsKeyword("data")) ++depth;
        if (core.IsKeyword("end") && --depth == 0) return;
    }
}

Point ReadDirection(ReaderCore& core) {
    const Point axis = core.ReadCoordinates();
    const bool isUnit = (axis.x == 1 && axis.y == 0 && axis.z == 0) || (axis.x == 0 && axis.y == 1 && axis.z == 0) ||
                        (axis.x == 0 && axis.y == 0 && axis.z == 1);
    if (!isUnit) ORVALO_RAISE(PiezoReader, ReaderMessages::PiezoDirectionSupp);
    return axis;
}

std::size_t ReadCount(const ReaderCore& core) {
    const auto count = core.Truncated();
    if (!count || *count < 1) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidCountValue);
    return static_cast<std::size_t>(*count);
}

short ReadPointCoordinate(const ReaderCore& core, const ExceptionMessage& message) {
    const auto value = core.Truncated();
    if (!value || *value < std::numeric_limits<short>::min() || *value > std::numeric_limits<short>::max()) {
        ORVALO_RAISE(PiezoReader, message);
    }
    return static_cast<short>(*value);
}

int ReadPointTable(ReaderCore& core) {
    core.NextToken();
    const auto id = core.TruncatedID();
    if (!id) ORVALO_RAISE(PiezoReader, ReaderMessages::InvalidTableID);
    return *id;
}

/// Reads a point from its x on; the last token of the point stays current.
PiezoData::Cell ReadPoint(ReaderCore& core, Piezo& piezo) {
    const short x = ReadPointCoordinate(core, ReaderMessages::InvalidXCoordinate);
    core.NextToken();
    const short y = ReadPointCoordinate(core, ReaderMessages::InvalidYCoordinate);
    core.NextToken();
    if (core.IsKeyword("i")) return {x, y, 0, 0, 0};
    if (!core.IsKeyword("t")) ORVALO_RAISE(PiezoReader, ReaderMessages::PiezoTableOrInterpolated);
    const int u = ReadPointTable(core);
    const int v = ReadPointTable(core);
    const int w = ReadPointTable(core);
    for (const int id : {u, v, w}) piezo.usedTables[id] = 0;
    return {x, y, static_cast<unsigned short>(u), static_cast<unsigned short>(v), static_cast<unsigned short>(w)};
}

void ReadPoints(ReaderCore& core, Piezo& piezo) {
    const std::size_t count = piezo.data.Count();
    if (count == 0) ORVALO_RAISE(PiezoReader, ReaderMessages::CountPropertyMissing);
    std::size_t read = 0;
    for (core.NextToken(); !core.IsKeyword("end"); core.NextToken()) {
        ModelAccess::Add(piezo.data, ReadPoint(core, piezo));
        if (++read > count) ORVALO_RAISE(PiezoReader, ReaderMessages::TooManyPiezoPoints);
    }
    if (read < count) {
        ORVALO_RAISE(PiezoReader, ReaderMessages::NotEnoughPiezoPoints,
                     static_cast<int>(static_cast<std::uint32_t>(count - read)));
    }
}

void ReadTable(ReaderCore& core, Piezo& piezo, bool doublePrecision) {
    const auto table = std::make_shared<Table>();
    ReadTableSection(core, *table, doublePrecision);
    if (!piezo.tables.emplace(table->id, table).second) {
        ORVALO_RAISE(SectionReader, ReaderMessages::TableIDReused, table->id);
    }
    if (piezo.samplesCount != 0 && piezo.samplesCount != table->count) {
        ORVALO_RAISE(SectionReader, ReaderMessages::DiffSamplesCountInPiezo);
    }
    piezo.samplesCount = table->count;
}

void ReadProperty(ReaderCore& core, unsigned int keyword, Piezo& piezo, double timeStep) {
    switch (keyword) {
        case ID:
            piezo.shared.id = core.ReadID();
            return;
        case Position:
            piezo.shared.position = core.ReadCoordinates();
            return;
        case Direction:
            piezo.direction = ReadDirection(core);
            return;
        case Start:
            piezo.start = ReadStartSteps(core, timeStep);
            return;
        case Method:
            piezo.method =
                1 + static_cast<int>(core.MatchKeyword("force.absolute.", ReaderMessages::ActuatorMethodExpected));
            return;
        case Amplitude:
            piezo.amplitude = core.ExpectNumber();
            return;
        default:
            ModelAccess::SetCount(piezo.data, ReadCount(core));
            return;
    }
}

}  // namespace

bool ReadPiezoSection(ReaderCore& core, Piezo& piezo, const Model& model, bool doublePrecision) {
    unsigned int given = 0;
    for (bool enabled = true;;) {
        core.NextToken();
        if (!enabled) {
            SkipSection(core);
            return false;
        }
        const unsigned int keyword = core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword);
        if (keyword == End) break;
        if (keyword < Data) core.NextValue();
        if (keyword == Enabled) {
            enabled = core.ReadEnabled();
        } else if (keyword == Data) {
            ReadPoints(core, piezo);
        } else if (keyword == TableBlock) {
            ReadTable(core, piezo, doublePrecision);
        } else {
            ReadProperty(core, keyword, piezo, model.timeStep);
        }
        given |= Bit(keyword);
    }
    if ((given & obligatory) != obligatory || piezo.data.Count() == 0) {
        ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    return true;
}

}  // namespace orvalo
