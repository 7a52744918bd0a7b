#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Common/Exception.h>

#include "Results/TextLines.h"

namespace orvalo {

/// What the reader would throw.
template <class... Arguments>
Exception ErrorOf(const ExceptionMessage& entry, Arguments... arguments) {
    return {"", 0, entry.code, entry.format, arguments...};
}

/// Collects what is wrong with a results file, in the order of the file.
class ResultsFindings {
public:
    ResultsFindings(const std::string& path, const CheckOptions& options) : path_(path), options_(options) {}

    /// Notes an error, which is to be explained at once; null where there are enough of its code.
    Diagnostic* Add(const Exception& error, const InputPlace& place, std::uint64_t length = 0, std::uint64_t row = 0);

    Diagnostic& AddWarning(const char* rule, std::string message);

    std::size_t ErrorCount() const { return errors_; }
    /// Whether nothing more is to be looked for.
    bool Ended() const { return options_.firstOnly && errors_ > 0; }
    const CheckOptions& Options() const { return options_; }

    /// The path as it stands in messages.
    const std::string& Path() const { return path_; }
    /// A place in a text, `bytes` further on its line than `start`.
    InputPlace PlaceAt(const TextPlace& start, std::size_t bytes = 0) const {
        return {path_, start.offset + bytes, start.line, start.column + bytes};
    }
    /// A place in a file without lines.
    InputPlace PlaceAt(std::uint64_t offset) const { return {path_, offset, 1, offset + 1}; }

    std::vector<Diagnostic> diagnostics;

private:
    const std::string& path_;
    const CheckOptions& options_;
    std::size_t errors_ = 0;
    /// How many errors each code had, and the diagnostic that tells of those beyond the limit.
    std::map<int, std::uint64_t> counts_;
    std::map<int, std::size_t> more_;
};

/// Bytes of a file between single quotes: at most about 40 of them, without control characters.
std::string Shown(std::string_view text);

}  // namespace orvalo
