#pragma once

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// What a read or a write throws that the caller's flag has ended (ReadOptions::stop, StopOn, WriteOptions::stop). No
/// message of the catalogue: the code is 0, the text "Reading was stopped." or "Writing was stopped.".
class ORVALO3DREADER_EXPORT Stopped : public Exception {
public:
    /// A read that was stopped.
    Stopped();
    /// With a text of its own, of at most 900 bytes.
    explicit Stopped(const char* text);
    /// Copies all.
    Stopped(const Stopped&) = default;
    /// Copies all.
    Stopped& operator=(const Stopped&) = default;
    ~Stopped() override;
};

}  // namespace orvalo
