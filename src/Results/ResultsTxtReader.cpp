#include "Results/ResultsTxtReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "Common/Publish.h"
#include "Common/Raise.h"
#include "Results/TextLines.h"

namespace orvalo {

namespace {

/// Small enough to stay in the processor's cache until it is converted.
constexpr std::size_t readSize = std::size_t{256} << 10U;

}  // namespace

void ResultsTxtReader::Execute(platform::InputFile& file, std::string_view alreadyRead) {
    const auto fileSize = static_cast<float>(file.Size().value_or(0));
    TextLines lines(file, alreadyRead, readSize, stop_);
    std::uint64_t bytes = 0;
    bool header = true;
    Publish(progress_, 0.0F);
    for (TextLine line; lines.Next(line);) {
        bytes += line.Length() + 1;
        if (header) {
            results_.ReadHeader(line);
        } else {
            results_.ReadData(line);
        }
        header = false;
        // A file of unknown size counts as read with the first line.
        if (progress_ != nullptr) Publish(progress_, std::min(static_cast<float>(bytes) / fileSize * 100.0F, 100.0F));
    }
    if (lines.Failed()) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(results_.FileName()).c_str());
    }
    results_.Finalize(stop_);
}

}  // namespace orvalo
