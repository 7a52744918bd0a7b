#pragma once

#include <bit>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <Orvalo3DReader/Check/CheckResults.h>
#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/ResultsMat.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Catalogue.h"
#include "Check.h"
#include "Results/ResultsTxtReader.h"
#include "Support/ModelFiles.h"

/// What both results fuzzers do with a file.
namespace orvalo::fuzz {

/// A file, in memory where the system has such.
#if defined(__linux__)
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(::memfd_create("input", 0)) {
        Check(descriptor_ >= 0 && ::write(descriptor_, data, size) == static_cast<ssize_t>(size),
              "the input can be written");
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};
#else
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : path_(support::WriteFile("input", {reinterpret_cast<const char*>(data), size})) {}

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};
#endif

inline bool Same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Asks all three forms of a query, by row or by cube. True when there is a value; else the error must be `failure` or,
/// where that is 0, one of a cube.
template <class... Place>
bool QueryForms(const Results& results, int failure, unsigned int col, Place... place) {
    constexpr double def = 0.1234;
    const double safe = results.SafeValueGet(col, place..., def);
    try {
        const double value = results.ExValueGet(col, place...);
        Check(Same(value, safe) && Same(value, results.ValueGet(col, place...)), "the forms of a query agree");
        return true;
    } catch (const Exception& error) {
        const int code = error.code();
        Check(Same(safe, def) && (code == failure || (failure == 0 && code >= 302 && code <= 305)),
              "a query is refused for what is tested first");
        Check(IsCatalogueText(code, error.what()), "the text is the catalogue's");
        return false;
    }
}

inline bool QueryCell(const Results& results, unsigned int col, int x, int y, int z) {
    return QueryForms(results, col >= results.ValuesColCount() ? 301 : 0, col, x, y, z);
}

inline bool QueryRow(const Results& results, unsigned int col, unsigned int row) {
    return QueryForms(results, row >= results.RowCount() ? 300 : 301, col, row);
}

inline void Query(const Results& results) {
    const unsigned int columns = results.ValuesColCount();
    const unsigned int rows = results.RowCount();
    for (const unsigned int row : {0U, rows / 2, rows - 1, rows, UINT_MAX}) {
        for (const unsigned int col : {0U, columns - 1, columns, UINT_MAX}) {
            Check(QueryRow(results, col, row) == (row < rows && col < columns), "rows and columns are those counted");
        }
    }
    for (const int x : {INT_MIN, -32769, -1, 0, 1, 65536, INT_MAX}) {
        QueryCell(results, 0, x, 0, 0);
        QueryCell(results, 0, 0, x, 0);
        QueryCell(results, 0, 0, 0, x);
    }
    if (results.IndicesColCount() < 3) return;
    for (unsigned int row = 0; row < rows && columns > 0; ++row) {
        const int x = results.IndexGet(0, row);
        const int y = results.IndexGet(1, row);
        const int z = results.IndexGet(2, row);
        Check(QueryCell(results, columns - 1, x, y, z), "every row's cube is found");
        QueryCell(results, 0, x + 1, y, z);
        QueryCell(results, 0, x, y - 1, z);
        QueryCell(results, 0, x, y, z + 1);
    }
}

inline void CheckError(const Exception& error) {
    Check(MayEndResults(error.code()), "the code is one of results files");
    Check(IsCatalogueText(error.code(), error.what()), "the text is the catalogue's");
}

/// The first error that the check finds is the one that was thrown, if one was, and every place is one of the file.
inline void CheckFindings(const std::string& path, std::size_t size, int code, const std::string& what) {
    const auto inFile = [&](const InputPlace& place, std::uint64_t length) {
        Check(place.offset + length <= size, "what is told is about bytes of the file");
    };
    const Diagnostic* first = nullptr;
    const std::vector<Diagnostic> diagnostics = CheckResults(path);
    for (const Diagnostic& diagnostic : diagnostics) {
        if (first == nullptr && diagnostic.severity == Severity::Error) first = &diagnostic;
        inFile(diagnostic.place, diagnostic.length);
        for (const Note& note : diagnostic.notes) inFile(note.place, note.length);
        for (const Fix& fix : diagnostic.fixes) inFile(fix.place, fix.length);
    }
    Check((first == nullptr) == (code == 0), "there is an error if one was thrown");
    if (first == nullptr) return;
    Check(first->code == code && first->message == what, "the first error is the one that was thrown");
    Check(!first->notes.empty(), "the first error is explained");
}

/// What comes of reading text in portions of 64 bytes.
inline std::string ReadText(const std::string& path, unsigned int threads) {
    float progress = 0;
    std::string text;
    try {
        platform::InputFile file;
        Check(file.Open(path), "the input can be opened");
        ResultsTxt results(path);
        ResultsTxtReader(results, &progress, StopFlag(), threads, 64).Execute(file, {});
        for (unsigned int row = 0; row < results.RowCount(); ++row) {
            for (unsigned int col = 0; col < results.IndicesColCount(); ++col)
                text += std::to_string(results.IndexGet(col, row)) + ' ';
            for (unsigned int col = 0; col < results.ValuesColCount(); ++col)
                text += std::to_string(std::bit_cast<std::uint64_t>(results.ValueGet(col, row))) + ' ';
        }
    } catch (const Exception& error) {
        text = std::to_string(error.code()) + error.what();
    }
    return text + std::to_string(progress);
}

inline void Run(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file(data, size);
    float progress = 0;
    ResultsReader reader(file.Path());
    reader.TraceProgress(&progress);
    std::unique_ptr<Results> results;
    int code = 0;
    std::string what;
    try {
        results.reset(reader.Execute());
    } catch (const Exception& error) {
        CheckError(error);
        code = error.code();
        what = error.what();
    }
    Check(progress >= 0 && progress <= 100, "progress is a percentage");
    if (results) Query(*results);
    CheckFindings(file.Path(), size, code, what);
    if (dynamic_cast<const ResultsMat*>(results.get()) != nullptr) return;
    Check(ReadText(file.Path(), 1) == ReadText(file.Path(), 3), "threads do not matter");
}

}  // namespace orvalo::fuzz
