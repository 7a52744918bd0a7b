#include "TextRows.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace {

constexpr std::size_t portion = std::size_t{1} << 16U;

// A field with a comma, a quote or a line end stands in quotes, and quotes in it twice.
std::string Quoted(const std::string& name, TextForm form) {
    if (form != TextForm::csv || name.find_first_of(",\"\r\n") == std::string::npos) return name;
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

}  // namespace

void WriteTextRows(const ResultsSelection& selection, TextForm form, const std::function<void(std::string_view)>& write,
                   std::atomic<std::uint64_t>& done) {
    const char separator = form == TextForm::csv ? ',' : '\t';
    const std::size_t indices = selection.Indices();
    // Text of results has four index columns.
    const bool padded = form == TextForm::results && indices == 3;
    const std::size_t shown = form == TextForm::results && indices > 4 ? 4 : indices;
    std::string text;
    const auto add = [&](const auto& field) { fmt::format_to(std::back_inserter(text), "{}{}", field, separator); };
    const auto endLine = [&] { text.back() = '\n'; };
    for (std::size_t i = 0; i < shown; ++i) add(selection.IndexNames()[i]);
    if (padded) add("f");
    for (std::size_t i = 0; i < selection.Columns(); ++i) add(Quoted(selection.ColumnName(i), form));
    endLine();
    for (std::size_t row = 0; row < selection.Rows(); ++row) {
        for (std::size_t i = 0; i < shown; ++i) {
            const int index = selection.Index(i, row);
            add(form == TextForm::csv ? index : static_cast<int>(static_cast<std::uint16_t>(index)));
        }
        if (padded) add(0);
        for (std::size_t i = 0; i < selection.Columns(); ++i) add(selection.Value(i, row));
        endLine();
        if (text.size() < portion) continue;
        write(text);
        text.clear();
        done = row + 1;
    }
    write(text);
    done = selection.Rows();
}
