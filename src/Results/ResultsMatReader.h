#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <Orvalo3DReader/Results/ResultsMat.h>

#include "Common/PageCommitter.h"
#include "Common/Platform.h"
#include "Common/StopFlag.h"
#include "Results/MatLayout.h"

namespace orvalo {

/// Reads the data elements of a MAT-file into a ResultsMat. Errors name the module of ResultsReader, whose step this
/// is. Numbers are taken from the file as they are in memory: both are little-endian.
class ResultsMatReader {
public:
    /// `bytesLeft` is what the open file holds from its current place on.
    ResultsMatReader(ResultsMat& results, platform::InputFile& file, std::uint64_t bytesLeft, float* progress,
                     StopFlag stop, unsigned int threads = 1)
        : results_(results), file_(file), bytesLeft_(bytesLeft), progress_(progress), stop_(stop), threads_(threads) {}

    void Execute();

private:
    /// What stands in an element before its data.
    struct Element {
        std::uint32_t byteCount;
        std::uint32_t rows;
        std::uint32_t columns;
        std::uint32_t dataType;
        std::uint32_t dataSize;
        /// In the element, with its tag.
        std::uint32_t nameSize;
        std::array<char, mat::nameCapacity> name;
    };

    bool ReadHead(Element& element);
    void ReadName(Element& element);
    void ReadDataTag(Element& element);
    void ReadValues(const Element& element);
    void ReadIndices(const Element& element);

    std::size_t Read(void* buffer, std::size_t size, PageCommitter* pages = nullptr);
    bool ReadByTeam(void* buffer, std::size_t size, PageCommitter& pages);
    void ReadExactly(void* buffer, std::size_t size);
    void ReadData(void* buffer, std::size_t size);
    std::uint32_t ReadWord();
    void RequireLeft(std::uint64_t size) const;
    void PublishProgress() const;
    [[noreturn]] void RaiseUnreadable() const;

    ResultsMat& results_;
    platform::InputFile& file_;
    std::uint64_t bytesLeft_;
    float* progress_;
    StopFlag stop_;
    unsigned int threads_;
    float valuesShare_ = 0;
    float indicesShare_ = 0;
};

}  // namespace orvalo
