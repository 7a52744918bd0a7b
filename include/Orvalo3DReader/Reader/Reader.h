#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo {

class ModelReader;

/// Reads one model input file, with the files that it includes, into a Model. Use a new one for each file.
class ORVALO3DREADER_EXPORT Reader {
public:
    /// Opens nothing yet. With `cubesOnly` just the CUBES and DAMPING sections are read, cells keep the material
    /// numbers written in the file, and the model is not checked as a whole.
    Reader(const std::string& path, bool cubesOnly);
    /// A reader of the same file in the same mode; what the other one has opened or found is shared.
    Reader(const Reader& other);
    /// As the copy constructor.
    Reader& operator=(const Reader& other);
    virtual ~Reader();

    /// Has the number of cubes read so far stored in `*counter` after every cube, for a caller that shows progress
    /// from another thread: relaxed atomic stores, no lock, so it must be loaded atomically there. `counter` stays the
    /// caller's and must outlive Execute; null turns it off.
    void TraceCurrentCube(unsigned long long* counter);

    /// Reads the file into `*model`, which stays the caller's. Samples of tables are stored as doubles or, without
    /// `doublePrecision`, as floats. Throws Exception at the first error, with the place in the input file put
    /// before its message; the model is then partly filled and to be discarded.
    void Execute(Model* model, bool doublePrecision);

    /// After Execute threw: the true place of the first byte of the token, or of the number in a bulk row, at which
    /// reading stopped.
    const InputPlace& FailurePlace() const;

    /// After Execute threw within the rows of a CUBES, DAMPING or SET section: the row at which reading stopped,
    /// counted from 1. Otherwise 0.
    std::uint64_t FailureRow() const;

private:
    std::unique_ptr<ModelReader> impl_;
};

}  // namespace orvalo
