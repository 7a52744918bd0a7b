#include "NumpyFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "HarmlessText.h"
#include "export/OutputFile.h"
#include "export/ZipFile.h"

namespace {

using Sink = std::function<void(std::string_view)>;

/// A text as a literal of Python.
std::string Literal(std::string_view text) {
    std::string literal = "'";
    for (const char c : Harmless(text)) {
        if (c == '\'' || c == '\\') literal += '\\';
        literal += c;
    }
    return literal + "'";
}

/// What stands before the data of an array.
std::string HeaderOf(const std::string& type, const std::string& shape) {
    std::string description = fmt::format("{{'descr': {}, 'fortran_order': False, 'shape': {}, }}", type, shape);
    const bool ascii =
        std::all_of(description.begin(), description.end(), [](char c) { return static_cast<signed char>(c) > 0; });
    // Version 2 is for headers of any length, version 3 also for names in UTF-8.
    std::string head = std::string("\x93NUMPY") + (ascii ? '\2' : '\3') + '\0';
    constexpr std::size_t lengthBytes = 4;
    constexpr std::size_t alignment = 64;
    const std::size_t used = head.size() + lengthBytes + description.size() + 1;
    description += std::string((alignment - used % alignment) % alignment, ' ') + '\n';
    const auto length = static_cast<std::uint32_t>(description.size());
    head.append(reinterpret_cast<const char*>(&length), sizeof length);
    return head + description;
}

template <class Number>
void Append(std::string& bytes, Number number) {
    char raw[sizeof number];
    std::memcpy(raw, &number, sizeof number);
    bytes.append(raw, sizeof number);
}

/// Hands the bytes of all rows to `sink`, a portion at a time; `add` appends those of a row.
template <class Add>
void WriteRows(std::size_t rows, const Sink& sink, ExportProgress& progress, const Add& add) {
    constexpr std::size_t portion = std::size_t{1} << 16U;
    std::string bytes;
    for (std::size_t row = 0; row < rows; ++row) {
        add(bytes, row);
        if (bytes.size() < portion) continue;
        sink(bytes);
        bytes.clear();
        progress.done += portion;
    }
    sink(bytes);
}

void AppendIndices(std::string& bytes, const ResultsSelection& selection, std::size_t row) {
    for (std::size_t i = 0; i < selection.Indices(); ++i) {
        Append(bytes, static_cast<std::int16_t>(selection.Index(i, row)));
    }
}

void AppendValues(std::string& bytes, const ResultsSelection& selection, std::size_t row) {
    for (std::size_t i = 0; i < selection.Columns(); ++i) Append(bytes, selection.Value(i, row));
}

/// The characters of a text in valid UTF-8.
std::u32string Characters(std::string_view text) {
    std::u32string characters;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            characters += byte;
        } else if (byte >= 0xC0) {
            characters += static_cast<char32_t>(byte & (byte >= 0xF0 ? 0x07U : byte >= 0xE0 ? 0x0FU : 0x1FU));
        } else {
            characters.back() = characters.back() << 6U | (byte & 0x3FU);
        }
    }
    return characters;
}

std::string NamesArray(const ResultsSelection& selection) {
    std::vector<std::u32string> names;
    std::size_t longest = 1;
    for (std::size_t i = 0; i < selection.Columns(); ++i) {
        names.push_back(Characters(Harmless(selection.ColumnName(i))));
        longest = std::max(longest, names.back().size());
    }
    std::string array = HeaderOf(fmt::format("'<U{}'", longest), fmt::format("({},)", names.size()));
    for (std::u32string& name : names) {
        name.resize(longest);
        for (const char32_t c : name) Append(array, c);
    }
    return array;
}

}  // namespace

void WriteNpy(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
              ExportProgress& progress) {
    std::string type = "[";
    for (const std::string& name : selection.IndexNames()) type += fmt::format("({}, '<i2'), ", Literal(name));
    for (const std::string& name : selection.UniqueNames()) type += fmt::format("({}, '<f8'), ", Literal(name));
    progress.total = selection.Rows() * (2 * selection.Indices() + sizeof(double) * selection.Columns());
    OutputFile out(path, options.overwrite);
    out.Write(HeaderOf(type + "]", fmt::format("({},)", selection.Rows())));
    WriteRows(
        selection.Rows(), [&](std::string_view bytes) { out.Write(bytes); }, progress,
        [&](std::string& bytes, std::size_t row) {
            AppendIndices(bytes, selection, row);
            AppendValues(bytes, selection, row);
        });
    out.Commit();
}

void WriteNpz(const ResultsSelection& selection, const std::string& path, const ExportOptions& options,
              ExportProgress& progress) {
    progress.total = selection.Rows() * (2 * selection.Indices() + sizeof(double) * selection.Columns());
    OutputFile out(path, options.overwrite);
    ZipFile zip(out, options.compress);
    const Sink sink = [&](std::string_view bytes) { zip.Data(bytes); };
    const auto shape = [&](std::size_t columns) { return fmt::format("({}, {})", selection.Rows(), columns); };
    zip.BeginEntry("indices.npy");
    sink(HeaderOf("'<i2'", shape(selection.Indices())));
    WriteRows(selection.Rows(), sink, progress,
              [&](std::string& bytes, std::size_t row) { AppendIndices(bytes, selection, row); });
    zip.EndEntry();
    zip.BeginEntry("values.npy");
    sink(HeaderOf("'<f8'", shape(selection.Columns())));
    WriteRows(selection.Rows(), sink, progress,
              [&](std::string& bytes, std::size_t row) { AppendValues(bytes, selection, row); });
    zip.EndEntry();
    zip.BeginEntry("columns.npy");
    sink(NamesArray(selection));
    zip.EndEntry();
    zip.End();
    out.Commit();
}
