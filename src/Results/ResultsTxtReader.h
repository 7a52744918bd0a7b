#pragma once

#include <string_view>

#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"

namespace orvalo {

/// Reads a text results file into a ResultsTxt. Errors name the module of ResultsReader, whose step this is.
class ResultsTxtReader {
public:
    ResultsTxtReader(ResultsTxt& results, float* progress) : results_(results), progress_(progress) {}

    /// Reads the open file, of which the caller has `alreadyRead` its first bytes.
    void Execute(platform::InputFile& file, std::string_view alreadyRead);

private:
    ResultsTxt& results_;
    float* progress_;
};

}  // namespace orvalo
