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

    void TraceCurrentCube(unsigned long long* counter) { progress_ = counter; }
    void Threads(unsigned int count) { threads_ = count; }
    void StopOn(const std::atomic<bool>* flag) { core_.lexer.stopFlag = StopFlag(flag); }
    void Execute(Model& model, bool doublePrecision);
    const InputPlace& FailurePlace() const { return failurePlace_; }
    std::uint64_t FailureRow() const { return failureRow_; }

private:
    void SetPath();
    void OpenMainFile();
    void ReadWholeModel(Model& model, bool doublePrecision);
    void ReadOnlyCubes(Model& model);
    void ProcessSection(Model& model, bool doublePrecision);
    void CheckOrder(unsigned int section) const;

    void ReadActuator(Model& model);
    void ReadPiezo(Model& model, bool doublePrecision);
    void ReadSensor(Model& model);
    void ReadDump(Model& model);
    void ReadTable(Model& model, bool doublePrecision);
    void ValidateRequirements(const Model& model) const;

    void NotePlace() noexcept;
    [[noreturn]] void RaiseLocated(Exception& inner);
    GridReading Grid() const;

    std::string path_;
    bool cubesOnly_;
    unsigned long long* progress_ = nullptr;
    unsigned int threads_ = 1;
    bool analysisDefined_ = false;
    bool materialsDefined_ = false;
    bool cubesDefined_ = false;
    bool dampingDefined_ = false;

    ReaderCore core_;
    std::string resolvedPath_;
    InputPlace failurePlace_;
    std::uint64_t failureRow_ = 0;
};

}  // namespace orvalo
