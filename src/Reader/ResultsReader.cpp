#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>

#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"
#include "Common/Raise.h"
#include "Reader/ResultsMatReader.h"
#include "Reader/ResultsTxtReader.h"
#include "Results/MatLayout.h"

namespace orvalo {

namespace {

/// Calls `read` and raises OutOfMemory as `sourceModule` where memory does not suffice. The name alone is so short that
/// this takes nothing from the heap that has just failed.
template <class Read>
auto WithinMemory(const char* sourceModule, const Read& read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    Raise(sourceModule, __LINE__, ReaderMessages::OutOfMemory);
}

std::unique_ptr<Results> ReadMat(const std::string& path, platform::InputFile& file, float* progress) {
    auto results = std::make_unique<ResultsMat>(path);
    // A file that cannot tell its size, such as a pipe, is not trusted to hold any data.
    const std::uint64_t size = file.Size().value_or(0);
    const std::uint64_t left = size > mat::headerSize ? size - mat::headerSize : 0;
    ResultsMatReader(*results, file, left, progress).Execute();
    return results;
}

std::unique_ptr<Results> ReadTxt(const std::string& path, platform::InputFile& file, std::string_view alreadyRead,
                                 float* progress) {
    return WithinMemory("ResultsTxt", [&] {
        auto results = std::make_unique<ResultsTxt>(path);
        ResultsTxtReader(*results, progress).Execute(file, alreadyRead);
        return results;
    });
}

std::unique_ptr<Results> ReadResults(const std::string& path, float* progress) {
    platform::InputFile file;
    if (!file.Open(path)) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorOpeningResultsFile, Quoted(path).c_str());
    }
    std::array<char, mat::headerSize> buffer;
    const auto got = file.Read(buffer.data(), buffer.size());
    if (!got) ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(path).c_str());
    const std::string_view header(buffer.data(), *got);
    if (!mat::IsMat(header)) return ReadTxt(path, file, header, progress);
    if (!header.ends_with(mat::version)) ORVALO_RAISE(ResultsReader, ReaderMessages::InvalidMATHeader);
    return ReadMat(path, file, progress);
}

}  // namespace

ResultsReader::ResultsReader(const std::string& path) try : path_(path) {
} catch (const std::bad_alloc&) {
    Raise("ResultsReader", __LINE__, ReaderMessages::OutOfMemory);
}

ResultsReader::~ResultsReader() = default;

void ResultsReader::TraceProgress(float* progress) {
    progress_ = progress;
}

Results* ResultsReader::Execute() {
    return WithinMemory("ResultsReader", [this] { return ReadResults(path_, progress_).release(); });
}

}  // namespace orvalo
