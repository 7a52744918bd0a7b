#include <Orvalo3DReader/Model/Set.h>

#include "Common/Buffers.h"
#include "Common/Raise.h"

namespace orvalo {

namespace {

// Twice what the points use; clients rely on the size of the buffer.
constexpr std::size_t bytesPerPoint = 2 * sizeof(Point);

}  // namespace

Set::Set(int setId, unsigned int pointsCount) : id(setId), count(pointsCount) {
    storage_ = AllocateZeroed(count, bytesPerPoint);
    if (!storage_) Raise(module::Set, knownLine::SetPoints, ReaderMessages::OutOfMemory);
    points = reinterpret_cast<Point*>(storage_.get());
}

}  // namespace orvalo
