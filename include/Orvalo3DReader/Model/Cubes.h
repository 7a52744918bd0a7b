#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/RecordRange.h>

namespace orvalo {

/// One cell of the grid, naturally aligned (8 bytes). The packed buffer of Cubes has records of 7 bytes, which
/// Cubes::Records and Cubes::CubeAt turn into these.
struct Cube {
    short x = 0;  ///< Cube coordinate.
    short y = 0;  ///< Cube coordinate.
    short z = 0;  ///< Cube coordinate.
    /// Vector index in the MaterialRepository; the number written in the file when only the cubes were read.
    unsigned char material = 0;
};

/// One damping cell, naturally aligned (16 bytes). The packed buffer of Cubes has records of 15 bytes, which
/// Cubes::DampingRecords and Cubes::DampingCubeAt turn into these.
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

/// A packed cube: x, y, z (signed 16-bit each), material (unsigned 8-bit).
template <>
struct Packing<Cube> {
    static constexpr std::size_t size = 7;  ///< In bytes.

    /// The cube that is packed at `record`.
    static Cube Read(const unsigned char* record) {
        Cube cube;
        ReadFields(record, cube);
        return cube;
    }

    /// Reads the fields of a cube into `cube`: one by one, as a copy of all seven bytes would go through memory.
    template <class Record>
    static void ReadFields(const unsigned char* record, Record& cube) {
        std::memcpy(&cube.x, record, sizeof cube.x);
        std::memcpy(&cube.y, record + 2, sizeof cube.y);
        std::memcpy(&cube.z, record + 4, sizeof cube.z);
        cube.material = record[6];
    }
};

/// A packed damping cube: a packed cube, then the damping coefficient (8-byte double).
template <>
struct Packing<DampingCube> {
    static constexpr std::size_t size = Packing<Cube>::size + sizeof(double);  ///< In bytes.

    /// The damping cube that is packed at `record`.
    static DampingCube Read(const unsigned char* record) {
        DampingCube cube;
        Packing<Cube>::ReadFields(record, cube);
        std::memcpy(&cube.coefficient, record + Packing<Cube>::size, sizeof cube.coefficient);
        return cube;
    }
};

/// The cells of a model as packed little-endian buffers without gaps, in file order.
///
/// Copies show the same pointers and counts as their source and share the buffers; the last copy releases them.
class ORVALO3DREADER_EXPORT Cubes {
public:
    /// Bytes of a packed cube: 7.
    static constexpr std::size_t recordSize = Packing<Cube>::size;
    /// Bytes of a packed damping cube: 15.
    static constexpr std::size_t dampingRecordSize = Packing<DampingCube>::size;

    /// All cubes: `for (orvalo::Cube cube : model.cubes.Records())`. Valid as long as this object's buffers.
    RecordRange<Cube> Records() const { return {CubesPtr(), CubesPtr() == nullptr ? 0 : CubesCount()}; }
    /// All damping cubes, as Records.
    RecordRange<DampingCube> DampingRecords() const {
        return {DampingCubesPtr(), DampingCubesPtr() == nullptr ? 0 : DampingCubesCount()};
    }
    /// Cube `index`. Not range-checked.
    Cube CubeAt(std::size_t index) const { return Records()[index]; }
    /// Damping cube `index`. Not range-checked.
    DampingCube DampingCubeAt(std::size_t index) const { return DampingRecords()[index]; }

    /// Makes room for a grid, to be filled through CubesPtr and TemperaturesPtr: `count` zeroed records, and as many
    /// temperatures if wanted, in the place of those before. Throws OutOfMemory.
    void AllocCubes(std::size_t count, bool withTemperatures);
    /// The same for damping cubes and DampingCubesPtr.
    void AllocDampingCubes(std::size_t count);
    /// Drops this object's buffers. A count whose buffer was never allocated is left as it is.
    void Free();

    /// The start of cube record `index`. Not range-checked. Not to be dereferenced: the record is packed into
    /// recordSize bytes, so it neither lies where a Cube may lie nor is as long as one. CubeAt gives its values.
    const Cube* GetCube(std::size_t index) const;
    /// The temperature of cube `index` in degrees Celsius. Not checked: only for grids with temperatures.
    double GetTemperature(std::size_t index) const { return temperaturesBuffer_.get()[index]; }

    /// Number of cube records: the count that the section declares.
    std::size_t CubesCount() const { return cubesCount_; }
    /// Number of damping records: the count that the section declares.
    std::size_t DampingCubesCount() const { return dampingCubesCount_; }

    /// CubesCount() records of recordSize bytes. Null when there are none. Owned by this object and its copies, as are
    /// the next two.
    unsigned char* CubesPtr() const { return cubesBuffer_.get(); }
    /// DampingCubesCount() records of dampingRecordSize bytes, or null.
    unsigned char* DampingCubesPtr() const { return dampingCubesBuffer_.get(); }
    /// CubesCount() temperatures in degrees Celsius, or null when the grid carries none.
    double* TemperaturesPtr() const { return temperaturesBuffer_.get(); }

private:
    std::size_t cubesCount_ = 0;
    std::size_t dampingCubesCount_ = 0;
    std::shared_ptr<unsigned char[]> cubesBuffer_;
    std::shared_ptr<unsigned char[]> dampingCubesBuffer_;
    std::shared_ptr<double[]> temperaturesBuffer_;
};

}  // namespace orvalo
