#include <algorithm>
#include <limits>
#include <memory>

#include "Common/Raise.h"
#include "Reader/BulkRows.h"
#include "Reader/PlainRows.h"
#include "Reader/Properties.h"
#include "Reader/RowsAhead.h"
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

/// Stores plain rows from `row` on in their places, up to `limit`; returns the one after the last of them. Inlined by
/// force, for what PlainRows says of its members.
[[gnu::always_inline]] inline std::uint64_t StorePlainRows(PlainRows<3>& rows, Point* points, std::uint64_t row,
                                                           std::uint64_t limit) {
    while (row < limit && rows.Look()) {
        points[row++] = ToPoint(rows.Field(0), rows.Field(1), rows.Field(2));
        rows.Accept();
    }
    return row;
}

/// Plain rows as several threads store them.
struct SetAhead {
    static constexpr RowLayout layout = RowLayout::NaturalLines;
    struct Kept {};

    std::uint64_t Read(BulkCursor& cursor, std::uint64_t first, std::uint64_t last, Kept&) const {
        PlainRows<3> rows(cursor);
        const std::uint64_t read = StorePlainRows(rows, points, first, last);
        cursor = rows.Cursor();
        return read;
    }
    void Keep(const Kept&) const {}
    void Clear(std::uint64_t first, std::uint64_t last) const { std::fill(points + first, points + last, Point{}); }

    Point* points;
};

/// Fills a set with the rows of a `data` block.
class SetRows {
public:
    SetRows(ReaderCore& core, Set& set) : core_(core), points_(set.points), count_(set.count) {}

    /// Reads what follows, up to the END of the rows.
    void ReadOn() {
        BulkPosition position;
        do {
            const std::uint64_t limit = std::min(count_, core_.rowLimit);
            read_ = ReadRowsAhead(core_, SetAhead{points_}, read_, limit, nullptr);
            PlainRows<3> rows{BulkCursor(core_.lexer)};
            read_ = StorePlainRows(rows, points_, read_, limit);
            rows.Cursor().Commit(core_.lexer);
            if (!ReadBulkPosition(core_, read_, count_, position)) break;
            points_[read_++] = ToPoint(position.x, position.y, position.z);
        } while (true);
        CloseBulkRows(core_, read_, count_);
    }

    bool Full() const { return read_ == count_; }
    void PassOver() { ++read_; }

private:
    ReaderCore& core_;
    Point* points_;
    std::uint64_t count_;
    std::uint64_t read_ = 0;
};

void ReadSet(ReaderCore& core, SetReading& reading) {
    const auto set = std::make_shared<Set>();
    core.Attempt([&] { *set = Set(reading.id, reading.count); });
    // Without a count, or memory for it, which are errors that reading may go on after, rows are passed over.
    if (reading.count == 0 || set->points == nullptr) return core.SkipBlock();
    SetRows rows(core, *set);
    ReadAllRows(core, rows, 3);
    core.Attempt([&] {
        if (reading.id > 0 && !reading.model.sets.emplace(reading.id, set).second) {
            ORVALO_RAISE(SectionReader, ReaderMessages::SetIDReused, reading.id);
        }
    });
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
    given.Require(core, properties);
}

}  // namespace orvalo
