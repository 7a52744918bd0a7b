#include <limits>
#include <memory>
#include <optional>

#include "Common/Raise.h"
#include "Reader/BulkRows.h"
#include "Reader/PlainRows.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr const char* keywords = "end.id.count.data.";
enum Keyword { End, ID, Count, Data };

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

void ReadSet(ReaderCore& core, Model& model, int id, unsigned int count) {
    const auto set = std::make_shared<Set>(id, count);
    ReadPoints(core, *set);
    if (!model.sets.emplace(id, set).second) ORVALO_RAISE(SectionReader, ReaderMessages::SetIDReused, id);
}

}  // namespace

void ReadSetSection(ReaderCore& core, Model& model) {
    std::optional<int> id;
    std::optional<unsigned int> count;
    bool dataGiven = false;
    const auto checkPrerequisites = [&] {
        if (!count) ReaderCore::RaiseObligatoryMissing("Count");
        if (!id) ReaderCore::RaiseObligatoryMissing("ID");
    };
    for (;;) {
        core.NextToken();
        switch (core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword)) {
            case ID:
                // Here alone no `=` is skipped.
                core.NextToken();
                id = ReadSetID(core);
                break;
            case Count:
                core.NextValue();
                count = static_cast<unsigned int>(ReadBulkCount(core, std::numeric_limits<std::uint32_t>::max()));
                break;
            case Data:
                checkPrerequisites();
                ReadSet(core, model, *id, *count);
                dataGiven = true;
                break;
            default:
                checkPrerequisites();
                if (!dataGiven) ReaderCore::RaiseObligatoryMissing("Data");
                return;
        }
    }
}

}  // namespace orvalo
