#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include <Orvalo3DReader/Export.h>

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

    /// Whether it is a place in a file at all.
    bool Known() const { return !path.empty(); }
};

/// Whether all of both is equal.
inline bool operator==(const InputPlace& a, const InputPlace& b) {
    return a.offset == b.offset && a.line == b.line && a.column == b.column && a.path == b.path;
}
/// Whether anything is not.
inline bool operator!=(const InputPlace& a, const InputPlace& b) {
    return !(a == b);
}

/// Writes "path:line:column", as compilers name places.
ORVALO3DREADER_EXPORT std::ostream& operator<<(std::ostream& out, const InputPlace& place);

}  // namespace orvalo
