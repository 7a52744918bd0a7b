#pragma once

#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

/// Reads a simulation results file: tab-separated text or a MATLAB 5 MAT-file, told apart by content.
class ORVALO3DREADER_EXPORT ResultsReader {
public:
    /// Opens nothing yet.
    explicit ResultsReader(const std::string& path);
    /// A reader of the same file with the same place for progress.
    ResultsReader(const ResultsReader&) = default;
    /// As the copy constructor.
    ResultsReader& operator=(const ResultsReader&) = default;
    virtual ~ResultsReader();

    /// Has the progress of reading, 0 to 100 percent, stored in `*progress` for a caller that polls it from another
    /// thread: relaxed atomic stores, no lock, so it must be loaded atomically there. `progress` stays the caller's and
    /// must outlive Execute; null turns it off.
    void TraceProgress(float* progress);

    /// Reads the file and returns a new object, a ResultsMat or a ResultsTxt, that the caller owns and deletes. The
    /// reader may be destroyed first. Throws Exception.
    Results* Execute();

private:
    std::string path_;
    float* progress_ = nullptr;
};

}  // namespace orvalo
