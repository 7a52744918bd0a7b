#include "Results/ResultsTxtReader.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Common/Publish.h"
#include "Common/Raise.h"
#include "Results/TextLines.h"

namespace orvalo {

void ResultsTxtReader::Execute(platform::InputFile& file, std::string_view alreadyRead) {
    TextProgress progress{progress_, static_cast<float>(file.Size().value_or(0))};
    TextLines lines(file, alreadyRead, readSize_, stop_);
    bool header = true;
    Publish(progress_, 0.0F);
    for (TextLine line; lines.Next(line);) {
        progress.bytes += line.Length() + 1;
        if (header) {
            results_.ReadHeader(line);
        } else {
            results_.ReadData(line);
        }
        progress.Tell();
        if (ahead_.threads > 1 && !header && line.newline) ReadAhead(lines, line, progress);
        header = false;
    }
    if (lines.Failed()) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(results_.FileName()).c_str());
    }
    results_.Finalize(stop_, ahead_.threads);
}

/// Reads on with several threads where that is worth it. The rows that follow the `last` one are about as long.
void ResultsTxtReader::ReadAhead(TextLines& lines, const TextLine& last, TextProgress& progress) {
    constexpr std::uint64_t anyNumber = std::numeric_limits<std::uint64_t>::max();
    if (!ahead_.MayPay(lines.Ahead(), RowLayout::Lines, anyNumber)) return;
    const std::size_t longestRow = std::min<std::size_t>(2 * last.Length() + 256, TextLines::longestLine + 1);
    const std::uint64_t blocks = results_.ReadAhead(lines, longestRow, ahead_.threads, progress, stop_);
    stop_.Check();
    ahead_.Note(lines.Ahead(), blocks);
}

}  // namespace orvalo
