#pragma once

#include <string_view>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"
#include "Common/StopFlag.h"

namespace orvalo {

/// Reads a text results file into a ResultsTxt. Errors name the module of ResultsReader, whose step this is.
class ResultsTxtReader {
public:
    ResultsTxtReader(ResultsTxt& results, float* progress, StopFlag stop)
        : results_(results), progress_(progress), stop_(stop) {}

    /// Reads the open file, of which the caller has `alreadyRead` its first bytes.
    void Execute(platform::InputFile& file, std::string_view alreadyRead);

private:
    ResultsTxt& results_;
    float* progress_;
    StopFlag stop_;
};

}  // namespace orvalo
