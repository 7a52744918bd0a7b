#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"
#include "Common/Raise.h"
#include "Common/WithinMemory.h"
#include "Results/ResultsMatReader.h"
#include "Results/ResultsTxtReader.h"

namespace orvalo {

namespace {

constexpr std::size_t matHeaderSize = 128;
constexpr std::string_view matText = "MATLAB 5.0 MAT-file";
/// Version 1.0 and the mark of a file written little-endian.
constexpr std::string_view matVersion("\0\1IM", 4);

bool IsMat(std::string_view header) {
    return header.size() == matHeaderSize && header.starts_with(matText);
}

std::unique_ptr<Results> ReadMat(const std::string& path, platform::InputFile& file, float* progress) {
    auto results = std::make_unique<ResultsMat>(path);
    // A file that cannot tell its size, such as a pipe, is not trusted to hold any data.
    const std::uint64_t size = file.Size().value_or(0);
    const std::uint64_t left = size > matHeaderSize ? size - matHeaderSize : 0;
    ResultsMatReader(*results, file, left, progress).Execute();
    return results;
}

std::unique_ptr<Results> ReadTxt(const std::string& path, platform::InputFile& file, std::string_view alreadyRead,
                                 float* progress) {
    return WithinMemory(module::ResultsTxt, __LINE__, [&] {
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
    std::array<char, matHeaderSize> buffer;
    const auto got = file.Read(buffer.data(), buffer.size());
    if (!got) ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(path).c_str());
    const std::string_view header(buffer.data(), *got);
    if (!IsMat(header)) return ReadTxt(path, file, header, progress);
    if (!header.ends_with(matVersion)) ORVALO_RAISE(ResultsReader, ReaderMessages::InvalidMATHeader);
    return ReadMat(path, file, progress);
}

}  // namespace

ResultsReader::ResultsReader(const std::string& path)
    : path_(WithinMemory(module::ResultsReader, __LINE__, [&] { return path; })) {}

ResultsReader::~ResultsReader() = default;

void ResultsReader::TraceProgress(float* progress) {
    progress_ = progress;
}

Results* ResultsReader::Execute() {
    return WithinMemory(module::ResultsReader, __LINE__, [this] { return ReadResults(path_, progress_).release(); });
}

}  // namespace orvalo
