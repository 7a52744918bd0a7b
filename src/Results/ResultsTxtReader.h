#pragma once

#include <cstddef>
#include <string_view>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"
#include "Common/ReadingAhead.h"
#include "Common/StopFlag.h"
#include "Results/TextRowsAhead.h"

namespace orvalo {

/// Reads a text results file into a ResultsTxt. Errors name the module of ResultsReader, whose step this is.
class ResultsTxtReader {
public:
    /// Small enough to stay in the processor's cache until it is converted.
    static constexpr std::size_t defaultReadSize = std::size_t{256} << 10U;

    ResultsTxtReader(ResultsTxt& results, float* progress, StopFlag stop, unsigned int threads = 1,
                     std::size_t readSize = defaultReadSize)
        : results_(results), progress_(progress), stop_(stop), ahead_(threads), readSize_(readSize) {}

    /// Reads the open file, of which the caller has `alreadyRead` its first bytes.
    void Execute(platform::InputFile& file, std::string_view alreadyRead);

private:
    void ReadAhead(TextLines& lines, const TextLine& last, TextProgress& progress);

    ResultsTxt& results_;
    float* progress_;
    StopFlag stop_;
    ReadingAhead ahead_;
    std::size_t readSize_;
};

}  // namespace orvalo
