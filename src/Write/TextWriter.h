#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "Common/StopFlag.h"
#include "Write/OutputFile.h"
#include "Write/Progress.h"

namespace orvalo {

/// Text on its way to a file, gathered in a buffer. The flag is looked at whenever the buffer is written.
class TextWriter {
public:
    TextWriter(OutputFile& file, Progress& progress, StopFlag stop);

    /// Where at least `size` (up to `mostRoom`) bytes may be written; Take then takes what was, up to `end`.
    char* Room(std::size_t size) {
        if (size > static_cast<std::size_t>(bufferEnd_ - end_)) Flush();
        return end_;
    }
    void Take(char* end) { end_ = end; }
    static constexpr std::size_t mostRoom = std::size_t{1} << 20U;

    void Text(std::string_view text);
    void Number(double value);
    void Integer(std::uint64_t value);

    /// Writes out what is in the buffer. Throws WriteError and Stopped.
    void Flush();
    void Done(std::uint64_t units) { progress_.Add(units); }

private:
    OutputFile& file_;
    Progress& progress_;
    StopFlag stop_;
    std::unique_ptr<char[]> buffer_;
    char* bufferEnd_;
    char* end_;
};

}  // namespace orvalo
