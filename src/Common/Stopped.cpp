#include <Orvalo3DReader/Common/Stopped.h>

namespace orvalo {

Stopped::Stopped() : Exception("Common\\Stopped", __LINE__, 0, "Reading was stopped.") {}

Stopped::~Stopped() = default;

}  // namespace orvalo
