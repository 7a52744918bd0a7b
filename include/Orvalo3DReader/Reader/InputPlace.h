#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// A place in an input file as an editor counts it.
struct InputPlace {
    /// The path by which the file was opened; empty when no file was being read.
    std::string path;
    /// Bytes from the start of the file.
    std::uint64_t offset = 0;
    /// From 1; a line ends with a line feed.
    std::uint64_t line = 1;
    /// From 1, in bytes.
    std::uint64_t column = 1;
};

}  // namespace orvalo
