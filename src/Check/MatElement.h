#pragma once

#include <cstdint>
#include <string>

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "Results/MatLayout.h"

namespace orvalo {

/// An element of a MAT-file, as far as it was looked at.
struct MatElement {
    std::uint64_t start = 0;
    mat::Head head{};
    /// What messages call it: its name in quotes, where that can be told.
    std::string called = "this matrix";
    /// Its name, and what it takes with its tag, as the reader takes them.
    std::string name;
    std::uint32_t nameLength = 0;
    std::uint32_t nameSize = 0;
    std::uint32_t dataType = 0;
    std::uint32_t dataSize = 0;

    std::uint64_t NameStart() const { return start + sizeof(mat::Head); }
    std::uint64_t DataTagStart() const { return NameStart() + nameSize; }
    std::uint64_t DataStart() const { return DataTagStart() + 8; }
    std::uint64_t End() const { return DataStart() + dataSize; }
};

// What tells how an element differs from the accepted form. The diagnostic's place becomes that of what differs.

/// Its type is none of a matrix.
void ExplainElementType(Diagnostic& diagnostic, const MatElement& element);
/// The words that are the same in every accepted matrix.
void ExplainFixedWords(Diagnostic& diagnostic, const MatElement& element);
/// The type of the data.
void ExplainDataType(Diagnostic& diagnostic, const MatElement& element);
/// The byte count of the data, or the one of the whole element.
void ExplainDataSize(Diagnostic& diagnostic, const MatElement& element);
void ExplainWholeSize(Diagnostic& diagnostic, const MatElement& element);

/// How a matrix becomes one of 16-bit integers.
inline constexpr const char* howToStoreIndices =
    "Indices: MATLAB's save -v6 stores a matrix of class double as 16-bit integers if all its numbers are whole and "
    "one needs 16 bits and a sign, such as a fourth column of -1000: idx = [x y z repmat(-1000, n, 1)].";

}  // namespace orvalo
