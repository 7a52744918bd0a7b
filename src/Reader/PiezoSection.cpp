#include <limits>
#include <memory>

#include "Common/Buffers.h"
#include "Common/Raise.h"
#include "Model/CodeWords.h"
#include "Reader/ModelAccess.h"
#include "Reader/Properties.h"
#include "Reader/Sections.h"
#include "Reader/StartSteps.h"

namespace orvalo {

namespace {

struct PiezoReading {
    Piezo& piezo;
    const ModelReading& model;
};

/// Passes over the rest of a disabled section, after the current token. Data and table blocks nest, each with an END of
/// its own.
void SkipSection(ReaderCore& core) {
    for (std::size_t depth = 1;;) {
        core.NextToken();
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
    if (!count || *count < 1) {
        core.range = {1.0, static_cast<double>(std::numeric_limits<std::int64_t>::max()), true};
        ORVALO_RAISE(SectionReader, ReaderMessages::InvalidCountValue);
    }
    return CountInMemory(static_cast<std::uint64_t>(*count));
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

void ReadPoints(ReaderCore& core, PiezoReading& reading) {
    Piezo& piezo = reading.piezo;
    const std::size_t count = piezo.data.Count();
    core.Attempt([&] {
        if (count == 0) ORVALO_RAISE(PiezoReader, ReaderMessages::CountPropertyMissing);
    });
    std::size_t read = 0;
    for (;;) {
        const bool whole = core.Attempt([&] {
            core.NextToken();
            if (core.IsKeyword("end")) return;
            ModelAccess::Add(piezo.data, ReadPoint(core, piezo));
            if (++read > count && count > 0) ORVALO_RAISE(PiezoReader, ReaderMessages::TooManyPiezoPoints);
        });
        if (whole && core.IsKeyword("end")) break;
        if (whole) continue;
        if (core.AtSection()) return core.Hold();
        if (core.MeansEnd()) return;
        ++read;
        core.ResumeOnLaterLine([](std::string_view) { return true; });
    }
    core.Attempt([&] {
        if (read >= count) return;
        ORVALO_RAISE(PiezoReader, ReaderMessages::NotEnoughPiezoPoints,
                     static_cast<int>(static_cast<std::uint32_t>(count - read)));
    });
}

void ReadOwnTable(ReaderCore& core, PiezoReading& reading) {
    Piezo& piezo = reading.piezo;
    const auto table = std::make_shared<Table>();
    // What is missing is told at the table's END, after which the patch goes on.
    if (!core.Attempt([&] { ReadTable(core, *table, reading.model.doublePrecision); })) return;
    core.Attempt([&] {
        if (!piezo.tables.emplace(table->id, table).second) {
            ORVALO_RAISE(SectionReader, ReaderMessages::TableIDReused, table->id);
        }
        if (piezo.samplesCount != 0 && piezo.samplesCount != table->count) {
            ORVALO_RAISE(SectionReader, ReaderMessages::DiffSamplesCountInPiezo);
        }
    });
    piezo.samplesCount = table->count;
}

constexpr Property<PiezoReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"id", "ID", Takes::Value, always, [](ReaderCore& core, PiezoReading& r) { r.piezo.shared.id = core.ReadID(); }},
    {"enabled", "Enabled", Takes::Switch},
    {"position", "Position", Takes::Value, always,
     [](ReaderCore& core, PiezoReading& r) { r.piezo.shared.position = core.ReadCoordinates(); }},
    {"direction", "Direction", Takes::Value, always,
     [](ReaderCore& core, PiezoReading& r) { r.piezo.direction = ReadDirection(core); }},
    {"start", "Start", Takes::Value, optional,
     [](ReaderCore& core, PiezoReading& r) { r.piezo.start = ReadStartSteps(core, r.model.model.timeStep); }},
    {"method", "Method", Takes::Value, always,
     [](ReaderCore& core, PiezoReading& r) {
         r.piezo.method = core.ReadCode(excitationMethods, ReaderMessages::ActuatorMethodExpected);
     }},
    {"amplitude", "Amplitude", Takes::Value, optional,
     [](ReaderCore& core, PiezoReading& r) { r.piezo.amplitude = core.ExpectNumber(); }},
    {"count", "Count", Takes::Value, optional,
     [](ReaderCore& core, PiezoReading& r) { ModelAccess::SetCount(r.piezo.data, ReadCount(core)); }},
    {"data", "Data", Takes::Block, always, ReadPoints},
    {"table", "Table", Takes::Block, optional, ReadOwnTable},
};
static_assert(IsComplete(properties));

}  // namespace

WordList PiezoWords() {
    return properties;
}

void ReadPiezoSection(ReaderCore& core, const ModelReading& reading) {
    const auto piezo = std::make_shared<Piezo>();
    PiezoReading own{*piezo, reading};
    PropertySet given;
    if (!ReadProperties(core, properties, own, given)) return SkipSection(core);
    if (given.Lacks(core, properties, always) || piezo->data.Count() == 0) {
        ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    // A model holds one patch: the test for a reused ID assigns the new ID to the patch before and then finds it there.
    // Solvers have come to rely on it.
    for (const auto& earlier : reading.model.piezos) {
        earlier->shared.id = piezo->shared.id;
        if (earlier->shared.id != 0) ORVALO_RAISE(Reader, ReaderMessages::PiezoIDReused, piezo->shared.id);
    }
    reading.model.piezos.push_back(piezo);
}

}  // namespace orvalo
