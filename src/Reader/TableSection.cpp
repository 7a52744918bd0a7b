#include <cstring>
#include <limits>

#include "Common/Raise.h"
#include "Reader/BulkCursor.h"
#include "Reader/ModelAccess.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr const char* keywords = "end.id.count.data.";
enum Keyword { End, ID, Count, Data };

int ReadTableID(const ReaderCore& core) {
    const auto id = core.TruncatedID();
    if (!id) ORVALO_RAISE(TableReader, ReaderMessages::InvalidIDProperty);
    return *id;
}

std::size_t ReadTableCount(const ReaderCore& core) {
    const auto count = core.Truncated();
    if (!count || *count < 1 || *count > std::numeric_limits<std::int32_t>::max()) {
        ORVALO_RAISE(TableReader, ReaderMessages::InvalidCountValue);
    }
    return static_cast<std::size_t>(*count);
}

[[noreturn]] void RaiseNotEnough(std::size_t missing) {
    ORVALO_RAISE(TableReader, ReaderMessages::NotEnoughTableElements, static_cast<int>(missing));
}

template <class Sample>
void ReadSamples(ReaderCore& core, Table& table) {
    auto* sample = static_cast<unsigned char*>(table.data);
    const std::size_t count = table.count;
    std::size_t read = 0;
    const auto store = [&](double number) {
        const auto value = static_cast<Sample>(number);
        std::memcpy(sample + sizeof value * read++, &value, sizeof value);
    };
    for (;;) {
        BulkCursor cursor(core.lexer);
        double number = 0.0;
        while (read < count && cursor.TakeNumber(number)) store(number);
        cursor.Commit();

        core.NextToken();
        if (core.IsKeyword("end")) break;
        if (read == count) ORVALO_RAISE(TableReader, ReaderMessages::TooManyTableElements);
        store(core.ExpectNumber());
    }
    if (read < count) RaiseNotEnough(count - read);
}

void ReadData(ReaderCore& core, Table& table, bool doublePrecision) {
    if (table.id == -1) ReaderCore::RaiseObligatoryMissing("ID");
    if (table.count == 0) ReaderCore::RaiseObligatoryMissing("Count");
    ModelAccess::Allocate(table, doublePrecision);
    if (doublePrecision) {
        ReadSamples<double>(core, table);
    } else {
        ReadSamples<float>(core, table);
    }
}

}  // namespace

void ReadTableSection(ReaderCore& core, Table& table, bool doublePrecision) {
    std::size_t samples = 0;
    for (;;) {
        core.NextToken();
        switch (core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword)) {
            case ID:
                core.NextValue();
                table.id = ReadTableID(core);
                break;
            case Count:
                core.NextValue();
                table.count = ReadTableCount(core);
                break;
            case Data:
                ReadData(core, table, doublePrecision);
                samples = table.count;
                break;
            default:
                if (table.id == -1 || table.count == 0 || samples == 0) {
                    ORVALO_RAISE(TableReader, ReaderMessages::ObligatoryPropNotDefined);
                }
                // A count raised behind the data promises samples that are not there.
                if (samples < table.count) RaiseNotEnough(table.count - samples);
                return;
        }
    }
}

}  // namespace orvalo
