#include <limits>
#include <memory>

#include "Common/Raise.h"
#include "Reader/BulkRows.h"
#include "Reader/PlainRows.h"
#include "Reader/Properties.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

struct SetReading {
    Model& model;
    int id = 0;
    unsigned int count = 0;
};

int ReadSetID(const ReaderCore& core) {
    const auto id = core.TruncatedID();
    if (!id) ORVALO_RAISE(SectionReader, ReaderMessages::InvalidIDProperty);
    return *id;
}

Point ToPoint(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
    return {static_cast<short>(x), static_cast<short>(y), static_cast<short>(z)};
}

void ReadPoints(ReaderCore& core, Set& set) {
    const std::uint64_t count = set.count;
    std::uint64_t read = 0;
    BulkPosition position;
    do {
        PlainRows<3> rows(core.lexer);
        while (read < count && rows.Look()) {
            set.points[read++] = ToPoint(rows.Field(0), rows.Field(1), rows.Field(2));
            rows.Accept();
        }
        rows.Commit();
        if (!ReadBulkPosition(core, read, count, position)) break;
        set.points[read++] = ToPoint(position.x, position.y, position.z);
    } while (true);
    CloseBulkRows(core, read, count);
}

void ReadSet(ReaderCore& core, SetReading& reading) {
    const auto set = std::make_shared<Set>(reading.id, reading.count);
    ReadPoints(core, *set);
    if (!reading.model.sets.emplace(reading.id, set).second) {
        ORVALO_RAISE(SectionReader, ReaderMessages::SetIDReused, reading.id);
    }
}

constexpr Property<SetReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"count", "Count", Takes::Value, always,
     [](ReaderCore& core, SetReading& reading) {
         reading.count = static_cast<unsigned int>(ReadBulkCount(core, std::numeric_limits<std::uint32_t>::max()));
     }},
    {"id", "ID", Takes::BareValue, always, [](ReaderCore& core, SetReading& reading) { reading.id = ReadSetID(core); }},
    {"data", "Data", Takes::Rows, always, ReadSet},
};
static_assert(IsComplete(properties));

}  // namespace

WordList SetWords() {
    return properties;
}

void ReadSetSection(ReaderCore& core, const ModelReading& reading) {
    SetReading own{reading.model};
    PropertySet given;
    ReadProperties(core, properties, own, given);
    given.Require(properties);
}

}  // namespace orvalo
