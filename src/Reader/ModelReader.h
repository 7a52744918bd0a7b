#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

#include "Reader/ReaderCore.h"
#include "Reader/Sections.h"

namespace orvalo {

/// The driver behind Reader: opens the main file, takes sections in their order, checks the whole and says where it
/// failed.
class ModelReader {
public:
    ModelReader(const std::string& path, bool cubesOnly, std::size_t bufferSize = Lexer::defaultBufferSize)
        : path_(path), cubesOnly_(cubesOnly), core_(bufferSize) {}

    /// Has errors noted and reading go on after them; must outlive Execute.
    void RecoverWith(Recovery* recovery) { core_.recovery = recovery; }
    const ReaderCore& Core() const { return core_; }

    void TraceCurrentCube(unsigned long long* counter) { progress_ = counter; }
    void Threads(unsigned int count) { core_.ahead.threads = count; }
    void StopOn(const std::atomic<bool>* flag) { core_.lexer.stopFlag = StopFlag(flag); }
    void Execute(Model& model, bool doublePrecision);
    const InputPlace& FailurePlace() const { return failurePlace_; }
    std::uint64_t FailureRow() const { return failureRow_; }

private:
    void Read(Model& model, bool doublePrecision);
    void SetPath();
    void OpenMainFile();
    void ReadWholeModel(const ModelReading& reading);
    void ReadOnlyCubes(const ModelReading& reading);
    void ReadSections(const ModelReading& reading);
    void ReadSection(const Section& section, const ModelReading& reading);
    void CheckOrder(const Section& section);
    void CheckComplete(const Model& model);
    void NoteDefined(const Section& section);
    bool IsDefined(SectionOrder order) const;

    void NotePlace() noexcept;
    [[noreturn]] void RaiseLocated(Exception& inner);
    std::string CloseInput();

    std::string path_;
    bool cubesOnly_;
    unsigned long long* progress_ = nullptr;
    /// A bit for each SectionOrder of which a section was met.
    unsigned int defined_ = 0;
    /// A bit for each that was missed where it should have come first.
    unsigned int assumed_ = 0;

    ReaderCore core_;
    std::string resolvedPath_;
    InputPlace failurePlace_;
    std::uint64_t failureRow_ = 0;
};

}  // namespace orvalo
