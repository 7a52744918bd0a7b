#include <Orvalo3DReader/Common/Stopped.h>

namespace orvalo {

Stopped::Stopped() : Stopped("Reading was stopped.") {}

Stopped::Stopped(const char* text) : Exception("Common\\Stopped", __LINE__, 0, "%s", text) {}

Stopped::~Stopped() = default;

}  // namespace orvalo
