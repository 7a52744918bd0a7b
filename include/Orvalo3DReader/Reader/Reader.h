#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/InputPlace.h>
#include <Orvalo3DReader/Reader/ReadError.h>

namespace orvalo {

class ModelReader;

/// Reads one model input file, with the files that it includes, into a Model. Use a new one for each file. ReadModel
/// does the same in one call.
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

    /// How many threads may read: 1 by default, 0 for as many as the process may run. See ReadOptions::threads.
    void Threads(unsigned count);

    /// Has Execute throw Stopped soon after `*flag` is set, as ReadOptions::stop says. `flag` stays the caller's and
    /// must outlive Execute; null turns it off.
    void StopOn(const std::atomic<bool>* flag);

    /// Reads the file into `*model`, which stays the caller's. Samples of tables are stored as doubles or, without
    /// `doublePrecision`, as floats. Throws ReadError at the first error, with the place in the input file put
    /// before its message, and Stopped; the model is then partly filled and to be discarded.
    void Execute(Model* model, bool doublePrecision);

    /// After Execute threw: ReadError::Place.
    const InputPlace& FailurePlace() const;

    /// After Execute threw: ReadError::Row.
    std::uint64_t FailureRow() const;

private:
    std::unique_ptr<ModelReader> impl_;
};

}  // namespace orvalo
