#pragma once

#include <string_view>

namespace orvalo {

/// What a file is instead of results, in a sentence, and how to come by results.
struct FileSign {
    const char* message;
    /// Whether it is data of a MAT-file, of a kind that is not read.
    bool mat;
};

/// Goes by the first bytes of the file, of which 128 suffice; null for nothing known.
const FileSign* FindFileSign(std::string_view bytes);

/// What a file is, if its first bytes, of which a few hundred suffice, are those of results; null for others.
const char* LooksLikeResults(std::string_view bytes);

/// Whether a file that begins with these bytes, of which a few hundred suffice, is a model: a section with one of its
/// properties, or an include, after any comments.
bool LooksLikeModel(std::string_view bytes);

}  // namespace orvalo
