#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Common/Platform.h"
#include "Common/Raise.h"
#include "Common/StopFlag.h"
#include "Common/WithinMemory.h"
#include "Common/Workers.h"
#include "Results/MatLayout.h"
#include "Results/ResultsMatReader.h"
#include "Results/ResultsTxtReader.h"

namespace orvalo {

namespace {

/// What a reader keeps after its path, so that its size stays what programs were compiled for.
struct Requests {
    const std::atomic<bool>* stop = nullptr;
    unsigned int threads = 1;
};
static_assert(std::is_trivially_copyable_v<Requests>);
static_assert(sizeof(ResultsReader) == sizeof(void*) + sizeof(std::string) + sizeof(float*));

std::string WithRequests(const std::string& path) {
    const Requests none;
    return std::string(path).append(reinterpret_cast<const char*>(&none), sizeof none);
}

std::string PathOf(const std::string& pathAndRequests) {
    return pathAndRequests.substr(0, pathAndRequests.size() - sizeof(Requests));
}

Requests RequestsOf(const std::string& pathAndRequests) {
    Requests requests;
    std::memcpy(&requests, pathAndRequests.data() + pathAndRequests.size() - sizeof requests, sizeof requests);
    return requests;
}

void SetRequests(std::string& pathAndRequests, const Requests& requests) {
    std::memcpy(pathAndRequests.data() + pathAndRequests.size() - sizeof requests, &requests, sizeof requests);
}

std::unique_ptr<Results> ReadMat(const std::string& path, platform::InputFile& file, float* progress, StopFlag stop,
                                 unsigned int threads) {
    auto results = std::make_unique<ResultsMat>(path);
    // A file that cannot tell its size, such as a pipe, is not trusted to hold any data.
    const std::uint64_t size = file.Size().value_or(0);
    const std::uint64_t left = size > mat::headerSize ? size - mat::headerSize : 0;
    ResultsMatReader(*results, file, left, progress, stop, threads).Execute();
    return results;
}

std::unique_ptr<Results> ReadTxt(const std::string& path, platform::InputFile& file, std::string_view alreadyRead,
                                 float* progress, StopFlag stop, unsigned int threads) {
    return WithinMemory(module::ResultsTxt, __LINE__, [&] {
        auto results = std::make_unique<ResultsTxt>(path);
        ResultsTxtReader(*results, progress, stop, threads).Execute(file, alreadyRead);
        return results;
    });
}

std::unique_ptr<Results> ReadFile(const std::string& path, float* progress, const Requests& requests) {
    const StopFlag stop(requests.stop);
    const unsigned int threads = ThreadCount(requests.threads);
    stop.Check();
    platform::InputFile file;
    if (!file.Open(path)) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorOpeningResultsFile, Quoted(path).c_str());
    }
    std::array<char, mat::headerSize> buffer;
    const auto got = file.Read(buffer.data(), buffer.size());
    if (!got) ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(path).c_str());
    const std::string_view header(buffer.data(), *got);
    if (!mat::IsMat(header)) return ReadTxt(path, file, header, progress, stop, threads);
    if (!header.ends_with(mat::version)) ORVALO_RAISE(ResultsReader, ReaderMessages::InvalidMATHeader);
    return ReadMat(path, file, progress, stop, threads);
}

}  // namespace

ResultsReader::ResultsReader(const std::string& path)
    : pathAndRequests_(WithinMemory(module::ResultsReader, __LINE__, [&] { return WithRequests(path); })) {}

ResultsReader::~ResultsReader() = default;

void ResultsReader::TraceProgress(float* progress) {
    progress_ = progress;
}

void ResultsReader::Threads(unsigned int count) {
    Requests requests = RequestsOf(pathAndRequests_);
    requests.threads = count;
    SetRequests(pathAndRequests_, requests);
}

void ResultsReader::StopOn(const std::atomic<bool>* flag) {
    Requests requests = RequestsOf(pathAndRequests_);
    requests.stop = flag;
    SetRequests(pathAndRequests_, requests);
}

Results* ResultsReader::Execute() {
    return WithinMemory(module::ResultsReader, __LINE__, [this] {
        return ReadFile(PathOf(pathAndRequests_), progress_, RequestsOf(pathAndRequests_)).release();
    });
}

std::unique_ptr<Results> ReadResults(const std::string& path, const ReadOptions& options) {
    ResultsReader reader(path);
    reader.TraceProgress(options.percentRead);
    reader.Threads(options.threads);
    reader.StopOn(options.stop);
    return std::unique_ptr<Results>(reader.Execute());
}

}  // namespace orvalo
