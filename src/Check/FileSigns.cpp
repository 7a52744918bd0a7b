#include "Check/FileSigns.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>

#include "Check/ResultsHeader.h"
#include "Common/Bytes.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

struct Sign {
    std::string_view bytes;
    FileSign sign;
};

constexpr FileSign version73 = {
    "This is a MAT-file of version 7.3, an HDF5 file. Save it again as version 5, uncompressed: "
    "save('results.mat', 'val', 'idx', '-v6').",
    true};
constexpr FileSign version4 = {
    "This looks like a MAT-file of version 4. Save it again as version 5: save('results.mat', 'val', 'idx', '-v6').",
    true};
constexpr FileSign utf16 = {"This is UTF-16 text. Save it as UTF-8 or ASCII, without a byte order mark.", false};

constexpr Sign signs[] = {
    {"MATLAB 7.3 ", version73},
    {"\x89HDF\r\n\x1A\n",
     {"This is an HDF5 file. MAT-files of version 7.3 are such files; save it again as version 5, uncompressed: "
      "save('results.mat', 'val', 'idx', '-v6').",
      true}},
    {"MATLAB 5.0 MAT-file", {"The file ends within the header of a MAT-file, which has 128 bytes.", true}},
    {"MATLAB ",
     {"This looks like a MAT-file, but its header does not begin with 'MATLAB 5.0 MAT-file'. Save it again with "
      "save('results.mat', 'val', 'idx', '-v6').",
      true}},
    {"# Created by Octave",
     {"This is Octave's own text format. Write tab-separated text, with a line of column names first.", false}},
    {"\xFF\xFE", utf16},
    {"\xFE\xFF", utf16},
    {"\x1F\x8B", {"The file is compressed by gzip. Unpack it first.", false}},
    {"PK\x03\x04",
     {"This is a ZIP archive, such as spreadsheets and NumPy write. Save the numbers as tab-separated text.", false}},
    {"\x93NUMPY", {"This is a NumPy array. Save it as tab-separated text: numpy.savetxt with delimiter='\\t'.", false}},
    {"\xD0\xCF\x11\xE0", {"This is a spreadsheet. Save the numbers as tab-separated text.", false}},
    {"CDF\x01", {"This is a NetCDF file. Save the numbers as tab-separated text.", false}},
};

/// A matrix of a MAT-file of version 4 has no text at its start: five words (type, rows, columns, whether it is
/// complex, size of the name) and the name with its NUL.
bool IsVersion4(std::string_view bytes) {
    std::array<std::uint32_t, 5> words;
    if (bytes.size() < sizeof words) return false;
    std::memcpy(words.data(), bytes.data(), sizeof words);
    const auto [type, rows, columns, complex, nameSize] = words;
    if (type > 52 || type % 10 > 2 || complex > 1 || rows == 0 || columns == 0 || nameSize < 2) return false;
    if (nameSize > 64 || bytes.size() < sizeof words + nameSize) return false;
    const std::string_view name = bytes.substr(sizeof words, nameSize);
    return name.find('\0') == nameSize - 1;
}

bool IsLetter(char c) {
    return ToLower(c) >= 'a' && ToLower(c) <= 'z';
}

void SkipBlanksAndComments(std::string_view& text) {
    constexpr std::string_view commentSigns = ";%$";
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n,="), text.size()));
        if (text.empty() || commentSigns.find(text.front()) == commentSigns.npos) return;
        text.remove_prefix(std::min(text.find('\n'), text.size()));
    }
}

/// The word at the start, in lower case; empty where there is none.
std::string TakeWord(std::string_view& text) {
    SkipBlanksAndComments(text);
    std::string word;
    while (!text.empty() && (IsLetter(text.front()) || (!word.empty() && IsDigit(text.front())))) {
        word += ToLower(text.front());
        text.remove_prefix(1);
    }
    return word;
}

}  // namespace

const FileSign* FindFileSign(std::string_view bytes) {
    const auto* const found = std::find_if(std::begin(signs), std::end(signs),
                                           [&](const Sign& sign) { return bytes.starts_with(sign.bytes); });
    if (found != std::end(signs)) return &found->sign;
    return IsVersion4(bytes) ? &version4 : nullptr;
}

const char* LooksLikeResults(std::string_view bytes) {
    if (bytes.starts_with("MATLAB ")) return "This looks like a MAT-file: results, not a model.";
    const std::size_t first = bytes.find('\n');
    if (first == bytes.npos) return nullptr;
    // Names, and below them numbers.
    const std::string_view rest = bytes.substr(first + 1);
    const std::string_view second = rest.substr(0, rest.find('\n'));
    const bool numbers = !second.empty() && second.find_first_not_of("0123456789+-.eEnaif \t,;\r") == second.npos &&
                         second.find_first_of("0123456789") != second.npos;
    return numbers && CountFields(bytes.substr(0, first)) == CountFields(second)
               ? "This looks like results, not like a model."
               : nullptr;
}

bool LooksLikeModel(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    const std::string first = TakeWord(bytes);
    if (first.empty()) return false;
    const std::string second = TakeWord(bytes);
    const bool quoted = second.empty() && bytes.starts_with('"');
    if (first == "include") return quoted;
    for (const Section& section : sections) {
        const bool named = section.word == first;
        if (!named && WordList(sections).Nearest(first) != section.word) continue;
        const bool property = section.words().Has(second) || section.words().Nearest(second);
        // Materials begin with their number.
        const bool number = second.empty() && !bytes.empty() && IsDigit(bytes.front());
        return property || (named && number && section.order == SectionOrder::Materials);
    }
    return false;
}

}  // namespace orvalo
