#include "Results/TextRowsAhead.h"

namespace orvalo {

namespace {

/// The line at `begin`, which a line feed ends at `lineFeed`, as TextLines hands it out.
TextLine LineAt(const char* begin, const char* lineFeed) {
    return {begin, lineFeed != begin && lineFeed[-1] == '\r' ? lineFeed - 1 : lineFeed, true};
}

}  // namespace

TextRowsAhead::TextRowsAhead(const Storage& storage, std::uint64_t read, TextLines& lines, std::size_t longestRow,
                             unsigned int team, TextProgress& progress, StopFlag stop)
    : storage_(storage),
      lines_(lines),
      team_(team),
      progress_(progress),
      stop_(stop),
      text_(lines.Ahead(), RowLayout::Lines, longestRow, team),
      first_(team),
      begun_(read),
      read_(read) {}

std::uint64_t TextRowsAhead::Read() {
    const std::uint64_t first = read_;
    OrderedBlocks<TextRowsAhead>(*this, team_).Run();
    if (read_ == first) return first;
    const auto rows = static_cast<std::size_t>(read_);
    storage_.indices.SetRows(rows);
    storage_.values.SetRows(rows);
    lines_.MoveTo(offset_, read_ - first);
    return read_;
}

bool TextRowsAhead::Begin(unsigned int member, std::uint64_t) {
    // Where memory ends it is for the reader to tell, in which line.
    const std::uint64_t rows = begun_ + text_.Text(member).rows;
    const std::size_t inMemory = CountInMemory(rows);
    if (!storage_.indices.Reserve(inMemory) || !storage_.values.Reserve(inMemory)) return false;
    first_[member] = begun_;
    begun_ = rows;
    return true;
}

TextRowsAhead::Outcome TextRowsAhead::Work(unsigned int member, std::uint64_t) {
    const RowText::Block& block = text_.Text(member);
    const char* p = block.begin;
    auto row = static_cast<std::size_t>(first_[member]);
    std::uint64_t bytes = 0;
    DecimalRuns runs;
    const auto after = static_cast<std::size_t>(row + block.rows);
    storage_.indices.Commit(row, after);
    storage_.values.Commit(row, after);
    while (p != block.end) {
        const auto* const lineFeed =
            static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(block.end - p)));
        const TextLine line = LineAt(p, lineFeed);
        if (line.Length() > static_cast<std::size_t>(TextLines::longestLine)) break;
        const TextRow read = ReadTextRow(line, storage_.indices.RowAt(row), storage_.indexColumns,
                                         storage_.values.RowAt(row), storage_.valueColumns, runs);
        if (read.end != RowEnd::Whole) break;
        ++row;
        bytes += line.Length() + 1;
        p = lineFeed + 1;
    }
    return {row, p == block.end, text_.Offset(member, p), bytes};
}

bool TextRowsAhead::End(const Outcome& outcome) {
    read_ = outcome.read;
    offset_ = outcome.offset;
    progress_.bytes += outcome.bytes;
    progress_.Tell();
    if (outcome.whole) ++blocks_;
    return outcome.whole;
}

}  // namespace orvalo
