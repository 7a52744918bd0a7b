#pragma once

#include <array>
#include <cstdint>

#include <Orvalo3DReader/Model/MaterialRepository.h>

#include "Reader/ReaderCore.h"

/// The rules that the rows of CUBES, DAMPING and SET share. Rows are natural numbers without signs, points or comments.
namespace orvalo {

/// The coordinates of a bulk row: 0 to 32767 each.
struct BulkPosition {
    std::uint32_t x;
    std::uint32_t y;
    std::uint32_t z;
};

/// Reads the position of row `read`, counted from 0, if another row follows. Throws TooManyCubes from row `count` on,
/// InvalidXCoordinate, InvalidYCoordinate and InvalidZCoordinate.
bool ReadBulkPosition(ReaderCore& core, std::uint64_t read, std::uint64_t count, BulkPosition& position);

/// Reads the token after the rows, which must be the END of the rows; that of a short list will do. Throws
/// NotEnoughCubes or SectionClosingExpected.
void CloseBulkRows(ReaderCore& core, std::uint64_t read, std::uint64_t count);

/// Where the next row may begin after an error in one: the lexer stands there, unless there is none, because the rows
/// are over or cannot be told from one another.
enum class NextRow : std::uint8_t { AfterThisOne, AtThisOne, None };
/// To be called after an error in a row of `numbers` numbers; `full` tells that no more rows are due.
NextRow ResumeInRows(ReaderCore& core, unsigned int numbers, bool full);

/// Has `rows` read to their END, and where reading goes on after errors, do so in the next row. Its `ReadOn` reads all
/// that follows, its `PassOver` leaves out a row, its `Full` tells whether there are as many as declared.
template <class Rows>
void ReadAllRows(ReaderCore& core, Rows& rows, unsigned int numbers) {
    while (!core.Attempt([&] { rows.ReadOn(); })) {
        core.row = 0;
        const NextRow next = ResumeInRows(core, numbers, rows.Full());
        if (next == NextRow::None) return;
        if (next == NextRow::AfterThisOne) rows.PassOver();
    }
}

/// The material numbers of bulk rows.
class BulkMaterials {
public:
    /// What the cells store for each number in the file: the vector index in `materials`, or the number as written.
    BulkMaterials(const MaterialRepository& materials, bool asWritten);

    /// What to store for a number, or nothing sensible where `Known` denies it.
    unsigned int operator[](std::uint32_t number) const { return static_cast<unsigned int>(stored_[number]); }
    bool Known(std::uint32_t number) const { return number < stored_.size() && stored_[number] >= 0; }

    /// Reads the material number of a row and gives what to store. Throws IncorrectMaterialIndex and
    /// MaterialNotDefined.
    unsigned int Read(ReaderCore& core) const;

private:
    std::array<std::int16_t, 256> stored_;
};

/// The `count` of a section with bulk rows: at least 1 and at most `largest`. Throws InvalidCountValue.
std::uint64_t ReadBulkCount(const ReaderCore& core, std::int64_t largest);

}  // namespace orvalo
