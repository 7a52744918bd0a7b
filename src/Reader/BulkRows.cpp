#include "Reader/BulkRows.h"

#include <limits>

#include "Common/Raise.h"

namespace orvalo {

namespace {

void CheckCoordinate(std::uint32_t value, const ExceptionMessage& message) {
    constexpr std::uint32_t largest = std::numeric_limits<std::int16_t>::max();
    if (value > largest) ORVALO_RAISE(SectionReader, message);
}

std::uint32_t ReadCoordinate(ReaderCore& core, const ExceptionMessage& message) {
    std::uint32_t value = 0;
    if (!core.ReadNatural(value)) ORVALO_RAISE(SectionReader, message);
    CheckCoordinate(value, message);
    return value;
}

}  // namespace

bool ReadBulkPosition(ReaderCore& core, std::uint64_t read, std::uint64_t count, BulkPosition& position) {
    core.row = read + 1;
    if (!core.ReadNatural(position.x)) return false;
    if (read >= core.rowLimit) core.rowLimit = core.recovery->BulkRowBegins(read);
    if (read == count) ORVALO_RAISE(SectionReader, ReaderMessages::TooManyCubes);
    CheckCoordinate(position.x, ReaderMessages::InvalidXCoordinate);
    position.y = ReadCoordinate(core, ReaderMessages::InvalidYCoordinate);
    position.z = ReadCoordinate(core, ReaderMessages::InvalidZCoordinate);
    return true;
}

void CloseBulkRows(ReaderCore& core, std::uint64_t read, std::uint64_t count) {
    if (core.recovery != nullptr) {
        core.recovery->RowsRead(read);
        core.rowLimit = 0;
    }
    // What stands after the last row is no row.
    if (read == count) core.row = 0;
    core.NextToken();
    if (core.IsKeyword("end")) {
        core.row = 0;
        return;
    }
    if (read < count) ORVALO_RAISE(SectionReader, ReaderMessages::NotEnoughCubes, static_cast<int>(count - read));
    ORVALO_RAISE(SectionReader, ReaderMessages::SectionClosingExpected);
}

NextRow ResumeInRows(ReaderCore& core, unsigned int numbers, bool full) {
    Lexer& lexer = core.lexer;
    const bool tokenRead = !lexer.HasReadNatural();
    if (tokenRead && core.MeansEnd()) return NextRow::None;
    if (tokenRead && core.AtWord()) {
        core.Hold();
        return NextRow::None;
    }
    if (tokenRead && core.token.type == TokenType::Equals && core.IsOnNewLine()) return NextRow::AtThisOne;
    // Where each line holds a number more or less than a row, no row can be told from the next one.
    const std::size_t inLine = lexer.NumbersInLine();
    const bool shifted = inLine + 1 == numbers || inLine == numbers + 1;
    if (full || (!tokenRead && shifted && inLine == lexer.NumbersInNextLine())) {
        core.SkipBlock();
        return NextRow::None;
    }
    if (tokenRead && core.token.type == TokenType::Number && lexer.ReturnToNatural()) return NextRow::AtThisOne;
    // A row that lacks a number has taken one from the next line, which is a row.
    if (!tokenRead && inLine == numbers && lexer.IsFirstInLine() && lexer.ReturnToNatural())
        return NextRow::AfterThisOne;
    lexer.SkipRow();
    return NextRow::AfterThisOne;
}

BulkMaterials::BulkMaterials(const MaterialRepository& materials, bool asWritten) {
    stored_[0] = -1;
    for (int number = 1; number < 256; ++number) {
        stored_[static_cast<std::size_t>(number)] =
            static_cast<std::int16_t>(asWritten ? number : materials.File2Vec(number));
    }
}

unsigned int BulkMaterials::Read(ReaderCore& core) const {
    std::uint32_t number = 0;
    if (!core.ReadNatural(number) || number < 1 || number > 255) {
        ORVALO_RAISE(SectionReader, ReaderMessages::IncorrectMaterialIndex);
    }
    if (!Known(number)) ORVALO_RAISE(SectionReader, ReaderMessages::MaterialNotDefined, static_cast<int>(number));
    return (*this)[number];
}

std::uint64_t ReadBulkCount(const ReaderCore& core, std::int64_t largest) {
    const auto count = core.Truncated();
    if (!count || *count < 1 || *count > largest) {
        core.range = {1.0, static_cast<double>(largest), true};
        ORVALO_RAISE(SectionReader, ReaderMessages::InvalidCountValue);
    }
    return static_cast<std::uint64_t>(*count);
}

}  // namespace orvalo
