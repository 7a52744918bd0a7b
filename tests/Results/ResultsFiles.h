#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Reader/ResultsReader.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>

#include "Support/ModelFiles.h"

namespace orvalo {

/// What is called for all results that tests read without an error, if anything.
inline void (*afterReadingResults)(const Results& results) = nullptr;

inline std::unique_ptr<Results> Load(const std::string& path) {
    ResultsReader reader(path);
    reader.Threads(support::TestThreads());
    std::unique_ptr<Results> results(reader.Execute());
    if (afterReadingResults != nullptr) afterReadingResults(*results);
    return results;
}

inline std::unique_ptr<Results> LoadBytes(std::string_view content) {
    return Load(support::WriteFile("results", content));
}

/// An error as "code module: text", the path in it replaced by "PATH".
inline std::string Describe(const Exception& error, const std::string& path) {
    std::string text = error.what();
    if (const std::size_t place = text.find(path); place != std::string::npos) text.replace(place, path.size(), "PATH");
    return std::to_string(error.code()) + " " + error.file() + ": " + text;
}

/// "rows x value columns + index columns", for up to four rows followed by " | indices ; values" of each.
inline std::string Describe(const Results& results) {
    std::ostringstream out;
    out << results.RowCount() << "x" << results.ValuesColCount() << "+" << results.IndicesColCount();
    if (results.RowCount() > 4) return out.str();
    for (unsigned int row = 0; row < results.RowCount(); ++row) {
        out << " |";
        for (unsigned int col = 0; col < results.IndicesColCount(); ++col) out << ' ' << results.IndexGet(col, row);
        out << " ;";
        for (unsigned int col = 0; col < results.ValuesColCount(); ++col) out << ' ' << results.ValueGet(col, row);
    }
    return out.str();
}

/// What comes of reading the file.
inline std::string Outcome(const std::string& path) {
    try {
        return Describe(*Load(path));
    } catch (const Exception& error) {
        return Describe(error, path);
    }
}

inline std::string OutcomeOfBytes(std::string_view content) {
    return Outcome(support::WriteFile("results", content));
}

/// One matrix of a MAT-file: right unless a field is changed.
struct MatMatrix {
    std::uint32_t dataType = 9;  // 9 for doubles, 3 for 16-bit integers.
    std::uint32_t rows = 0;
    std::uint32_t columns = 0;
    std::string data;
    std::string name = "v";

    /// In words of the element's head (type, byte count, six fixed fields, rows, columns), then of the data tag.
    struct Change {
        std::size_t word;
        std::uint32_t value;
    };

    /// The element; a name of more than four bytes takes the full form.
    std::string Bytes(const std::vector<Change>& changes = {}) const {
        const auto length = static_cast<std::uint32_t>(name.size());
        std::string nameElement = (length <= 4 ? Words({1U | length << 16U}) : Words({1, length})) + name;
        while (nameElement.size() % 4 != 0 || nameElement.size() < 8) nameElement += '\0';
        const auto size = static_cast<std::uint32_t>(data.size());
        const auto whole = static_cast<std::uint32_t>(40 + nameElement.size()) + size;
        std::vector<std::uint32_t> words = {14, whole, 6, 8, 6, 0, 5, 8, rows, columns, dataType, size};
        for (const Change& change : changes) words[change.word] = change.value;
        const std::vector<std::uint32_t> head(words.begin(), words.begin() + 10);
        return Words(head) + nameElement + Words({words[10], words[11]}) + data;
    }

    static std::string Words(const std::vector<std::uint32_t>& words) { return Raw(words); }

    template <class T>
    static std::string Raw(const std::vector<T>& numbers) {
        return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(T)};
    }
};

inline std::string MatHeader(std::string_view version = {"\0\1IM", 4}) {
    std::string header = "MATLAB 5.0 MAT-file, written by a test";
    header.resize(124);
    return header.append(version);
}

inline MatMatrix Values(std::uint32_t columns, const std::vector<double>& data) {
    const auto rows = columns == 0 ? 0 : static_cast<std::uint32_t>(data.size() / columns);
    return {9, rows, columns, MatMatrix::Raw(data), "v"};
}

inline MatMatrix Indices(std::uint32_t columns, const std::vector<short>& data) {
    const auto rows = columns == 0 ? 0 : static_cast<std::uint32_t>(data.size() / columns);
    return {3, rows, columns, MatMatrix::Raw(data), "i"};
}

}  // namespace orvalo
