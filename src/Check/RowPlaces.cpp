#include "Check/RowPlaces.h"

#include "Common/Platform.h"

namespace orvalo {

RowPlace RowPlaces::Find(const SectionRecord& section, bool endsWithNumber, std::uint64_t row) {
    FilePlace first;
    FilePlace third;
    bool there = false;
    try {
        there = Begin(section, row);
        while (there && next_ <= row) there = ReadRow(section, endsWithNumber, first, third);
    } catch (const Exception&) {
        there = false;
    }
    if (!there) {
        section_ = nullptr;
        const PropertyRecord* const data = section.Find("data");
        if (data == nullptr) return {section.place, section.section->word.size()};
        return {data->place, data->word.size()};
    }
    const ReadPlace place{file_, first};
    const bool onOneLine = first.line == third.line;
    const auto& record = found_.record;
    const std::size_t token = found_.Source().TokenAt(record.PlaceOf({file_, onOneLine ? third : first})).size();
    return {place, onOneLine ? third.offset - first.offset + token : token};
}

/// Makes the lexer stand at the row or at one before it.
bool RowPlaces::Begin(const SectionRecord& section, std::uint64_t row) {
    constexpr std::uint64_t perMark = SectionRecord::rowsPerMark;
    if (section_ == &section && next_ <= row && row - next_ < perMark) return true;
    if (row / perMark >= section.rowMarks.size()) return false;
    const ReadPlace& mark = section.rowMarks[static_cast<std::size_t>(row / perMark)];
    const std::string& path = found_.record.files[static_cast<std::size_t>(mark.file)].path;
    if (!platform::IsRegularFile(path)) return false;
    lexer_.OpenAt(path, mark.place);
    section_ = &section;
    next_ = row / perMark * perMark;
    file_ = mark.file;
    return true;
}

bool RowPlaces::ReadRow(const SectionRecord& section, bool endsWithNumber, FilePlace& first, FilePlace& third) {
    const int naturals = section.section->word == "set" ? 3 : 4;
    for (int i = 0; i < naturals; ++i) {
        std::uint32_t number = 0;
        if (!lexer_.ReadNatural(number)) return false;
        if (i == 0) first = lexer_.MarkedPlace().second;
        if (i == 2) third = lexer_.MarkedPlace().second;
    }
    ++next_;
    if (!endsWithNumber) return true;
    Token token;
    lexer_.NextToken(token);
    // An include in place of the number leads to rows in another file.
    return token.type == TokenType::Number && lexer_.MarkedPlace().first == 0;
}

}  // namespace orvalo
