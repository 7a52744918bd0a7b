#include "Results/ResultsMatReader.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <optional>
#include <string>

#include "Common/Publish.h"
#include "Common/Raise.h"
#include "Common/Workers.h"
#include "Results/MatLayout.h"

namespace orvalo {

namespace {

static_assert(std::endian::native == std::endian::little && sizeof(double) == 8 && sizeof(short) == 2);

using namespace mat;

/// What is read at a time, for a column may be gigabytes.
constexpr std::size_t piece = std::size_t{1} << 20U;
constexpr std::size_t leastForTeam = 2 * piece;

}  // namespace

void ResultsMatReader::Execute() {
    Publish(progress_, 0.0F);
    for (Element element; ReadHead(element);) {
        ReadName(element);
        ReadDataTag(element);
        if (element.dataType == miDouble) {
            ReadValues(element);
        } else {
            ReadIndices(element);
        }
    }
    results_.Finalize(stop_, threads_);
}

/// False at the end of the file.
bool ResultsMatReader::ReadHead(Element& element) {
    Head head;
    const std::size_t got = Read(&head, sizeof head);
    if (got == 0) return false;
    if (got < sizeof head) RaiseUnreadable();
    if (head.type != miMatrix) ORVALO_RAISE(ResultsReader, ReaderMessages::MatrixExpected);
    if (head.fixed != accepted) ORVALO_RAISE(ResultsReader, ReaderMessages::UnsupportedMatrixFormat);
    element.byteCount = head.byteCount;
    element.rows = head.rows;
    element.columns = head.columns;
    return true;
}

void ResultsMatReader::ReadName(Element& element) {
    const std::uint32_t tag = ReadWord();
    std::uint32_t length = tag >> 16U;
    std::uint32_t stored = 4;
    std::uint32_t tagSize = 4;
    if (tag == miInt8) {
        length = ReadWord();
        if (length >= nameCapacity) ORVALO_RAISE(ResultsReader, ReaderMessages::VarNameTooLong);
        stored = StoredNameSize(length);
        tagSize = 8;
    } else if ((tag & 0xFFFFU) != miInt8) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::VarNameExpected);
    }
    ReadExactly(element.name.data(), stored);
    element.name[std::min(length, stored)] = '\0';
    element.nameSize = tagSize + stored;
}

void ResultsMatReader::ReadDataTag(Element& element) {
    element.dataType = ReadWord();
    element.dataSize = ReadWord();
    if (element.dataType != miDouble && element.dataType != miInt16) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::UnsupportedDataFormat);
    }
    // The size is divided, as the product of all three factors may not fit into 64 bits.
    const std::uint64_t size = ElementSize(element.dataType);
    const std::uint64_t count = std::uint64_t{element.rows} * element.columns;
    const bool noValues = element.dataType == miDouble && element.columns == 0;
    if (element.dataSize % size != 0 || element.dataSize / size != count || noValues) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::InvalidDataBlockSize, Quoted(element.name.data()).c_str());
    }
    if (element.byteCount != fixedSize + element.nameSize + element.dataSize) {
        ORVALO_RAISE(ResultsReader, ReaderMessages::InvalidWholeBlockSize, Quoted(element.name.data()).c_str());
    }
}

void ResultsMatReader::ReadValues(const Element& element) {
    if (results_.ValuesDefined()) ORVALO_RAISE(ResultsReader, ReaderMessages::TooManyVariablesDefined);
    results_.DefineValues(element.columns, element.rows);
    RequireLeft(element.dataSize);
    for (std::uint32_t column = 0; column < element.columns; ++column) {
        ReadData(results_.AllocateValues(column), element.dataSize / element.columns);
        valuesShare_ += 80.0F / static_cast<float>(element.columns);
        PublishProgress();
    }
}

void ResultsMatReader::ReadIndices(const Element& element) {
    if (results_.IndicesDefined()) ORVALO_RAISE(ResultsReader, ReaderMessages::TooManyVariablesDefined);
    if (element.columns < leastIndexColumns) ORVALO_RAISE(ResultsReader, ReaderMessages::UnsupportedMatrixFormat);
    RequireLeft(element.dataSize);
    ReadData(results_.AllocateIndices(element.columns, element.rows), element.dataSize);
    indicesShare_ = 20;
    PublishProgress();
}

/// How many bytes were read: fewer than asked for at the end of the file.
std::size_t ResultsMatReader::Read(void* buffer, std::size_t size, PageCommitter* pages) {
    auto* const bytes = static_cast<unsigned char*>(buffer);
    std::size_t filled = 0;
    for (std::size_t asked = 1, got = 1; filled < size && got == asked; filled += got) {
        stop_.Check();
        asked = std::min(piece, size - filled);
        if (pages != nullptr) pages->Reach(filled + asked);
        const std::optional<std::size_t> read = file_.Read(bytes + filled, asked);
        if (!read) RaiseUnreadable();
        got = *read;
    }
    bytesLeft_ -= std::min<std::uint64_t>(bytesLeft_, filled);
    return filled;
}

void ResultsMatReader::ReadExactly(void* buffer, std::size_t size) {
    if (Read(buffer, size) < size) RaiseUnreadable();
}

/// As ReadExactly, into a buffer that AllocateToFill made.
void ResultsMatReader::ReadData(void* buffer, std::size_t size) {
    PageCommitter pages(buffer, size);
    const bool whole =
        threads_ > 1 && size >= leastForTeam ? ReadByTeam(buffer, size, pages) : Read(buffer, size, &pages) == size;
    if (!whole) RaiseUnreadable();
}

/// As Read, several pieces at once. Returns whether all were read.
bool ResultsMatReader::ReadByTeam(void* buffer, std::size_t size, PageCommitter& pages) {
    auto* const bytes = static_cast<unsigned char*>(buffer);
    const std::optional<std::uint64_t> place = file_.Place();
    if (!place) return false;
    std::atomic<bool> whole{true};
    ShareOut(threads_, (size + piece - 1) / piece, [&](std::size_t i) {
        stop_.Check();
        const std::size_t begin = i * piece;
        const std::size_t asked = std::min(piece, size - begin);
        pages.Reach(begin + asked);
        if (file_.ReadAt(*place + begin, bytes + begin, asked) != asked) whole = false;
    });
    bytesLeft_ -= std::min<std::uint64_t>(bytesLeft_, size);
    return whole && file_.Seek(*place + size);
}

std::uint32_t ResultsMatReader::ReadWord() {
    std::uint32_t word;
    ReadExactly(&word, sizeof word);
    return word;
}

/// Refuses, before memory is taken for it, what the rest of the file cannot hold.
void ResultsMatReader::RequireLeft(std::uint64_t size) const {
    if (size > bytesLeft_) RaiseUnreadable();
}

void ResultsMatReader::PublishProgress() const {
    Publish(progress_, std::min(valuesShare_ + indicesShare_, 100.0F));
}

void ResultsMatReader::RaiseUnreadable() const {
    ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorReadingResultsFile, Quoted(results_.FileName()).c_str());
}

}  // namespace orvalo
