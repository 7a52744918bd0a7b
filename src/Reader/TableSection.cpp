#include <cstring>
#include <limits>
#include <memory>

#include "Common/PageCommitter.h"
#include "Common/Raise.h"
#include "Reader/BulkCursor.h"
#include "Reader/ModelAccess.h"
#include "Reader/Properties.h"
#include "Reader/RowsAhead.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

struct TableReading {
    Table& table;
    bool doublePrecision;
    /// How many were read.
    std::size_t samples = 0;
};

int ReadTableID(const ReaderCore& core) {
    const auto id = core.TruncatedID();
    if (!id) ORVALO_RAISE(TableReader, ReaderMessages::InvalidIDProperty);
    return *id;
}

std::size_t ReadTableCount(const ReaderCore& core) {
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    const auto count = core.Truncated();
    if (!count || *count < 1 || *count > largest) {
        core.range = {1.0, static_cast<double>(largest), true};
        ORVALO_RAISE(TableReader, ReaderMessages::InvalidCountValue);
    }
    return static_cast<std::size_t>(*count);
}

[[noreturn]] void RaiseNotEnough(std::size_t missing) {
    ORVALO_RAISE(TableReader, ReaderMessages::NotEnoughTableElements, static_cast<int>(missing));
}

/// Plain numbers as several threads store them.
template <class Sample>
struct SamplesAhead {
    static constexpr RowLayout layout = RowLayout::Numbers;
    struct Kept {};

    std::uint64_t Read(BulkCursor& cursor, std::uint64_t first, std::uint64_t last, Kept&) const {
        pages.Reach(last * sizeof(Sample));
        BulkCursor own = cursor;
        double number = 0.0;
        for (; first < last && own.TakeNumber(number); ++first) {
            const auto value = static_cast<Sample>(number);
            std::memcpy(samples + sizeof value * first, &value, sizeof value);
        }
        cursor = own;
        return first;
    }
    void Keep(const Kept&) const {}
    void Clear(std::uint64_t first, std::uint64_t last) const {
        std::memset(samples + sizeof(Sample) * first, 0, sizeof(Sample) * static_cast<std::size_t>(last - first));
    }

    unsigned char* samples;
    PageCommitter& pages;
};

template <class Sample>
void ReadSamples(ReaderCore& core, Table& table) {
    auto* sample = static_cast<unsigned char*>(table.data);
    // Without a count, which is an error that reading may go on after, samples are passed over.
    const std::size_t count = table.count > 0 ? table.count : std::numeric_limits<std::size_t>::max();
    std::size_t read = 0;
    PageCommitter pages(sample, table.count * sizeof(Sample));
    const auto store = [&](double number) {
        const auto value = static_cast<Sample>(number);
        if (table.count > 0) std::memcpy(sample + sizeof value * read, &value, sizeof value);
        ++read;
    };
    for (;;) {
        if (table.count > 0) {
            const SamplesAhead<Sample> ahead{sample, pages};
            read = static_cast<std::size_t>(ReadRowsAhead(core, ahead, read, count, nullptr));
        }
        BulkCursor cursor(core.lexer);
        double number = 0.0;
        // A sample takes fewer bytes than its text, but for the shortest ones.
        pages.Reach(read * sizeof(Sample) + static_cast<std::size_t>(cursor.end - cursor.at));
        while (read < count && cursor.TakeNumber(number)) store(number);
        cursor.Commit(core.lexer);

        const bool whole = core.Attempt([&] {
            core.NextToken();
            if (core.IsKeyword("end")) return;
            if (read == count) ORVALO_RAISE(TableReader, ReaderMessages::TooManyTableElements);
            store(core.ExpectNumber());
        });
        if (whole && core.IsKeyword("end")) break;
        if (whole) continue;
        if (core.AtWord()) return core.Hold();
        if (core.MeansEnd()) return;
        if (read == count) return core.SkipBlock();
        store(0.0);
    }
    core.Attempt([&] {
        if (read < table.count) RaiseNotEnough(table.count - read);
    });
}

void ReadData(ReaderCore& core, TableReading& reading) {
    core.Attempt([&] { ModelAccess::Allocate(reading.table, reading.doublePrecision); });
    if (reading.table.data == nullptr) return core.SkipBlock();
    if (reading.doublePrecision) {
        ReadSamples<double>(core, reading.table);
    } else {
        ReadSamples<float>(core, reading.table);
    }
    reading.samples = reading.table.count;
}

constexpr Property<TableReading> properties[] = {
    {"end", "END", Takes::Nothing},
    {"id", "ID", Takes::Value, always,
     [](ReaderCore& core, TableReading& reading) { reading.table.id = ReadTableID(core); }},
    {"count", "Count", Takes::Value, always,
     [](ReaderCore& core, TableReading& reading) { reading.table.count = ReadTableCount(core); }},
    {"data", "Data", Takes::Rows, always, ReadData},
};
static_assert(IsComplete(properties));

}  // namespace

WordList TableWords() {
    return properties;
}

void ReadTable(ReaderCore& core, Table& table, bool doublePrecision) {
    TableReading own{table, doublePrecision};
    PropertySet given;
    ReadProperties(core, properties, own, given);
    if (given.Lacks(core, properties, always)) {
        ORVALO_RAISE(TableReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    // A count raised after the data promises samples that are not there.
    if (own.samples < table.count) RaiseNotEnough(table.count - own.samples);
}

void ReadTableSection(ReaderCore& core, const ModelReading& reading) {
    const auto table = std::make_shared<Table>();
    ReadTable(core, *table, reading.doublePrecision);
    if (!reading.model.tables.emplace(table->id, table).second) {
        ORVALO_RAISE(Reader, ReaderMessages::TableIDReused, table->id);
    }
}

}  // namespace orvalo
