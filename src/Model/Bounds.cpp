#include <algorithm>

#include <Orvalo3DReader/Model/Bounds.h>

namespace orvalo {

namespace {

short Wrapped(int value) {
    return static_cast<short>(value);
}

}  // namespace

void Bounds::Update(short x, short y, short z) {
    if (!defined) {
        defined = true;
        minX = maxX = x;
        minY = maxY = y;
        minZ = maxZ = z;
        return;
    }
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
    minZ = std::min(minZ, z);
    maxZ = std::max(maxZ, z);
}

void Bounds::Inflate(short margin) {
    minX = Wrapped(minX - margin);
    minY = Wrapped(minY - margin);
    minZ = Wrapped(minZ - margin);
    maxX = Wrapped(maxX + margin);
    maxY = Wrapped(maxY + margin);
    maxZ = Wrapped(maxZ + margin);
}

void Bounds::Normalize() {
    norm.x = Wrapped(-minX);
    norm.y = Wrapped(-minY);
    norm.z = Wrapped(-minZ);
    maxX = Wrapped(maxX + norm.x);
    maxY = Wrapped(maxY + norm.y);
    maxZ = Wrapped(maxZ + norm.z);
    minX = minY = minZ = 0;
    normalized = true;
}

}  // namespace orvalo
