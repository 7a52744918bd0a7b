#pragma once

#include <cstddef>
#include <memory>

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// One cell of the grid, naturally aligned (8 bytes). In the packed buffer of Cubes a record is 7 bytes, so these
/// are read from there field by field or by copying 7 bytes.
struct Cube {
    short x = 0;  ///< Cube coordinate.
    short y = 0;  ///< Cube coordinate.
    short z = 0;  ///< Cube coordinate.
    /// Vector index in the MaterialRepository; the number written in the file when only the cubes were read.
    unsigned char material = 0;
};

/// One damping cell, naturally aligned (16 bytes). In the packed buffer of Cubes a record is 15 bytes.
struct DampingCube {
    short x = 0;  ///< Cube coordinate.
    short y = 0;  ///< Cube coordinate.
    short z = 0;  ///< Cube coordinate.
    /// As for Cube.
    unsigned char material = 0;
    /// Damping coefficient, as written.
    double coefficient = 0.0;
};

static_assert(sizeof(Cube) == 8 && sizeof(DampingCube) == 16, "clients rely on the sizes of these records");

/// The cells of a model as packed little-endian buffers without gaps, in file order.
///
/// Copies show the same pointers and counts as their source and share the buffers; the last copy releases them.
class ORVALO3DREADER_EXPORT Cubes {
public:
    /// Drops this object's buffers. A count whose buffer was never allocated is left as it is.
    void Free();

    /// The start of cube record `index` (7 bytes, unaligned). Not range-checked.
    const Cube* GetCube(std::size_t index) const;
    /// The temperature of cube `index` in degrees Celsius. Not checked: only for grids with temperatures.
    double GetTemperature(std::size_t index) const { return temperaturesBuffer_.get()[index]; }

    /// Number of cube records: the count that the section declares.
    std::size_t CubesCount() const { return cubesCount_; }
    /// Number of damping records: the count that the section declares.
    std::size_t DampingCubesCount() const { return dampingCubesCount_; }

    /// CubesCount() records of 7 bytes: x, y, z (signed 16-bit each), material (unsigned 8-bit). Null when there are
    /// none. Owned by this object and its copies, as are the next two.
    unsigned char* CubesPtr() const { return cubesBuffer_.get(); }
    /// DampingCubesCount() records of 15 bytes: those of a cube, then the damping coefficient (8-byte double).
    unsigned char* DampingCubesPtr() const { return dampingCubesBuffer_.get(); }
    /// CubesCount() temperatures in degrees Celsius, or null when the grid carries none.
    double* TemperaturesPtr() const { return temperaturesBuffer_.get(); }

private:
    friend class ModelAccess;

    // Both set the count, then replace an earlier buffer by a zeroed one. They throw OutOfMemory.
    void AllocCubes(std::size_t count, bool withTemperatures);
    void AllocDampingCubes(std::size_t count);

    std::size_t cubesCount_ = 0;
    std::size_t dampingCubesCount_ = 0;
    std::shared_ptr<unsigned char[]> cubesBuffer_;
    std::shared_ptr<unsigned char[]> dampingCubesBuffer_;
    std::shared_ptr<double[]> temperaturesBuffer_;
};

}  // namespace orvalo
