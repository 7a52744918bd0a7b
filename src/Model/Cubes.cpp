#include <Orvalo3DReader/Model/Cubes.h>

#include "Common/Buffers.h"
#include "Common/Raise.h"
#include "Model/CubeRecords.h"

namespace orvalo {

void Cubes::Free() {
    if (cubesBuffer_) cubesCount_ = 0;
    if (dampingCubesBuffer_) dampingCubesCount_ = 0;
    cubesBuffer_.reset();
    dampingCubesBuffer_.reset();
    temperaturesBuffer_.reset();
}

const Cube* Cubes::GetCube(std::size_t index) const {
    return reinterpret_cast<const Cube*>(cubesBuffer_.get() + cubeStride * index);
}

void Cubes::AllocCubes(std::size_t count, bool withTemperatures) {
    cubesCount_ = count;
    cubesBuffer_.reset();
    temperaturesBuffer_.reset();
    cubesBuffer_ = AllocateRecords(count, cubeStride);
    if (!cubesBuffer_) Raise(module::Cubes, knownLine::CubesBuffer, ReaderMessages::OutOfMemory);
    if (!withTemperatures) return;
    const auto bytes = AllocateToFill(count, sizeof(double));
    if (!bytes) Raise(module::Cubes, knownLine::TemperaturesBuffer, ReaderMessages::OutOfMemory);
    temperaturesBuffer_ = {bytes, reinterpret_cast<double*>(bytes.get())};
}

void Cubes::AllocDampingCubes(std::size_t count) {
    dampingCubesCount_ = count;
    dampingCubesBuffer_.reset();
    dampingCubesBuffer_ = AllocateRecords(count, dampingCubeStride);
    if (!dampingCubesBuffer_) Raise(module::Cubes, knownLine::DampingCubesBuffer, ReaderMessages::OutOfMemory);
}

}  // namespace orvalo
