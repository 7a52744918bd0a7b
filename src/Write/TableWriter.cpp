#include <algorithm>
#include <cmath>
#include <limits>

#include "Write/SectionWriters.h"
#include "Write/ShortestDecimal.h"

namespace orvalo {

namespace {

constexpr std::size_t piece = 8192;

}  // namespace

void CheckTables(const char* kind, const Tables& tables, StopFlag stop) {
    for (const auto& [id, shared] : tables) {
        if (id < 0) continue;
        const Subject subject{kind, id};
        const Table* const table = shared.get();
        if (table == nullptr || table->data == nullptr || table->count == 0) Refuse(subject, " has no samples");
        CheckId(subject, table->id);
        if (table->count > std::numeric_limits<std::int32_t>::max()) Refuse(subject, " has too many samples");
        stop.CheckEach(piece, table->count, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                if (std::isnan(table->Get(i))) Refuse(subject, ": sample ", i + 1, " is not a number");
            }
        });
    }
}

// Floats are written with all their digits, and so come back whether they are read as floats or as doubles.
void WriteTable(int id, const Table& table, SectionText& text) {
    text.Property("id", id);
    text.Count("count", table.count);
    text.BeginBlock("data");
    TextWriter& out = text.Out();
    for (std::size_t begin = 0; begin < table.count; begin += piece) {
        const std::size_t end = std::min(table.count, begin + piece);
        for (std::size_t i = begin; i < end; ++i) {
            char* const p = WriteDecimal(out.Room(decimalRoom), table.Get(i));
            *p = '\n';
            out.Take(p + 1);
        }
        out.Done(end - begin);
    }
    text.End();
}

void WriteTables(const Model& model, SectionText& text) {
    for (const auto& [id, table] : model.tables) {
        if (id < 0) continue;
        text.Begin(ReadTableSection);
        WriteTable(id, *table, text);
        text.End();
    }
}

}  // namespace orvalo
