#include <Orvalo3DReader/Write/WriteError.h>

namespace orvalo {

namespace {

/// What the description of an exception has room for besides its own words.
constexpr int longestText = 900;

}  // namespace

WriteError::WriteError(const std::string& text)
    : Exception("Write\\WriteError", __LINE__, 0, "%.*s", longestText, text.c_str()) {}

WriteError::~WriteError() = default;

}  // namespace orvalo
