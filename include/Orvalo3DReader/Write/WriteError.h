#pragma once

#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// Why something was not written: a value that no file can hold, or what the system said of the file. The text names
/// the value or the file. No message of the catalogue: the code is 0. What stood under the path still stands there.
class ORVALO3DREADER_EXPORT WriteError : public Exception {
public:
    /// An error of that text, of which at most 900 bytes are kept.
    explicit WriteError(const std::string& text);
    /// Copies all.
    WriteError(const WriteError&) = default;
    /// Copies all.
    WriteError& operator=(const WriteError&) = default;
    ~WriteError() override;
};

}  // namespace orvalo
