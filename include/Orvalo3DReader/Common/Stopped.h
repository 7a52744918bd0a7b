#pragma once

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// What a read throws that the caller's flag has ended (ReadOptions::stop, StopOn). No message of the catalogue: the
/// code is 0, the text "Reading was stopped.".
class ORVALO3DREADER_EXPORT Stopped : public Exception {
public:
    /// A read that was stopped.
    Stopped();
    /// Copies all.
    Stopped(const Stopped&) = default;
    /// Copies all.
    Stopped& operator=(const Stopped&) = default;
    ~Stopped() override;
};

}  // namespace orvalo
