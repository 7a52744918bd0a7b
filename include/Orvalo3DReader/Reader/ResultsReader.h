#pragma once

#include <atomic>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

/// Reads a simulation results file: tab-separated text or a MATLAB 5 MAT-file, told apart by content. ReadResults does
/// the same in one call.
class ORVALO3DREADER_EXPORT ResultsReader {
public:
    /// Opens nothing yet.
    explicit ResultsReader(const std::string& path);
    /// A reader of the same file that is asked for the same.
    ResultsReader(const ResultsReader&) = default;
    /// As the copy constructor.
    ResultsReader& operator=(const ResultsReader&) = default;
    virtual ~ResultsReader();

    /// Has the progress of reading, 0 to 100 percent, stored in `*progress` for a caller that polls it from another
    /// thread: relaxed atomic stores, no lock, so it must be loaded atomically there. `progress` stays the caller's and
    /// must outlive Execute; null turns it off.
    void TraceProgress(float* progress);

    /// How many threads may read: 1 by default, 0 for as many as the process may run. See ReadOptions::threads.
    void Threads(unsigned count);

    /// Has Execute throw Stopped soon after `*flag` is set, as ReadOptions::stop says. `flag` stays the caller's and
    /// must outlive Execute; null turns it off.
    void StopOn(const std::atomic<bool>* flag);

    /// Reads the file and returns a new object, a ResultsMat or a ResultsTxt, that the caller owns and deletes. The
    /// reader may be destroyed first. Throws Exception, and Stopped.
    Results* Execute();

private:
    // Objects keep the size that programs reserve for them which were compiled before there was more to ask for, and
    // such programs' copies take the members that they know. So the rest is kept in here, as bytes after the path.
    std::string pathAndRequests_;
    float* progress_ = nullptr;
};

}  // namespace orvalo
