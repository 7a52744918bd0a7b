#include "Check/ResultsMatCheck.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

#include "Check/CellBox.h"
#include "Check/Explanations.h"
#include "Common/Raise.h"

namespace orvalo {

namespace {

using M = ReaderMessages;
using namespace mat;

std::uint32_t PaddedToEight(std::uint32_t size) {
    return (size + 7U) & ~7U;
}

Exception Unreadable(const ResultsFindings& findings) {
    return ErrorOf(M::ErrorReadingResultsFile, Quoted(findings.Path()).c_str());
}

std::string ShapeOf(const MatElement& element) {
    return std::to_string(element.head.rows) + " x " + std::to_string(element.head.columns);
}

}  // namespace

void ResultsMatCheck::Execute() {
    std::array<char, headerSize> header;
    if (!ReadAt(0, header.data(), header.size())) return;
    const std::string_view written(header.data() + headerSize - version.size(), version.size());
    if (written != version) {
        Diagnostic& error = Add(ErrorOf(M::InvalidMATHeader), headerSize - version.size(), version.size());
        const bool swapped = written.ends_with("MI");
        AddNote(error, swapped
                           ? "The file was written big-endian; only little-endian MAT-files are read. Save it again "
                             "on a little-endian machine."
                           : "The header of a MAT-file of version 5 ends with the bytes 00 01 'I' 'M'.");
        if (!swapped) AddNote(error, "Save it again with save('results.mat', 'val', 'idx', '-v6').");
        return;
    }
    for (std::uint64_t start = headerSize; start < size_;) {
        MatElement element;
        element.start = start;
        if (!CheckElement(element)) return;
        start = element.End();
    }
    CheckWhole();
}

/// False, here and below, once the error has been found.
bool ResultsMatCheck::CheckElement(MatElement& element) {
    if (!CheckHead(element) || !CheckName(element) || !CheckDataTag(element)) return false;
    return element.dataType == miDouble ? CheckValues(element) : CheckIndices(element);
}

bool ResultsMatCheck::CheckHead(MatElement& element) {
    const std::uint64_t left = size_ - element.start;
    // Of an element that is cut off its type may still tell what it is.
    const bool whole = left >= sizeof(Head);
    const auto wanted = static_cast<std::size_t>(whole ? sizeof(Head) : std::min<std::uint64_t>(left, 4));
    if (!ReadAt(element.start, &element.head, wanted)) return false;
    if (!whole && left >= 4 && element.head.type != miMatrix) {
        Diagnostic& error = Add(Unreadable(findings_), element.start, left);
        AddNote(error, Counted(left, "byte") + " follow where a matrix may begin, too few for one.");
        ExplainElementType(error, element);
        return false;
    }
    if (!whole) return AddShort("the head of a matrix", element.start, sizeof(Head));
    if (element.head.type != miMatrix) {
        ExplainElementType(Add(ErrorOf(M::MatrixExpected), element.start, 4), element);
        return false;
    }
    if (element.head.fixed == accepted) return true;
    // The name stands after the dimensions, however many there are.
    const std::uint32_t dimensions = element.head.fixed[5];
    MatElement named = element;
    if (dimensions >= 8 && dimensions <= 64 && element.head.fixed[4] == miInt32) {
        named.start += PaddedToEight(dimensions) - 8;
        if (TakeName(named) == NameFault::None) {
            element.name = named.name;
            element.called = named.called;
        }
    }
    ExplainFixedWords(Add(ErrorOf(M::UnsupportedMatrixFormat), element.start, 4), element);
    return false;
}

/// Takes the name as the reader does.
ResultsMatCheck::NameFault ResultsMatCheck::TakeName(MatElement& element) {
    std::array<std::uint32_t, 2> tag{};
    if (!ReadAt(element.NameStart(), tag.data(), 4)) return NameFault::Short;
    element.nameLength = tag[0] >> 16U;
    std::uint32_t stored = 4;
    std::uint32_t tagSize = 4;
    if (tag[0] == miInt8) {
        if (!ReadAt(element.NameStart(), tag.data(), sizeof tag)) return NameFault::Short;
        element.nameLength = tag[1];
        if (element.nameLength >= nameCapacity) return NameFault::TooLong;
        stored = StoredNameSize(element.nameLength);
        tagSize = sizeof tag;
    } else if ((tag[0] & 0xFFFFU) != miInt8) {
        return NameFault::NoName;
    }
    element.nameSize = tagSize + stored;
    std::array<char, nameCapacity> bytes;
    if (!ReadAt(element.NameStart() + tagSize, bytes.data(), stored)) return NameFault::Short;
    const std::string_view name(bytes.data(), std::min(element.nameLength, stored));
    element.name = name.substr(0, name.find('\0'));
    if (!element.name.empty()) element.called = Shown(element.name);
    return NameFault::None;
}

bool ResultsMatCheck::CheckName(MatElement& element) {
    const std::uint64_t start = element.NameStart();
    switch (TakeName(element)) {
        case NameFault::None:
            return true;
        case NameFault::Short:
            return AddShort("the name of a matrix", start, std::max(element.nameSize, 4U));
        case NameFault::NoName: {
            Diagnostic& error = Add(ErrorOf(M::VarNameExpected), start, 4);
            AddNote(error, "The name of the matrix must begin here, with 1 (miINT8) in 16 or 32 bits.");
            return false;
        }
        case NameFault::TooLong:
            break;
    }
    Diagnostic& error = Add(ErrorOf(M::VarNameTooLong), start + 4, 4);
    AddNote(error, "The name has " + Counted(element.nameLength, "byte") + "; it may have 4095.");
    return false;
}

bool ResultsMatCheck::CheckDataTag(MatElement& element) {
    std::array<std::uint32_t, 2> tag{};
    const std::uint64_t start = element.DataTagStart();
    if (!ReadAt(start, tag.data(), sizeof tag))
        return AddShort("the tag of the data of " + element.called, start, sizeof tag);
    element.dataType = tag[0];
    element.dataSize = tag[1];
    if (element.dataType != miDouble && element.dataType != miInt16) {
        ExplainDataType(Add(ErrorOf(M::UnsupportedDataFormat), start, 4), element);
        return false;
    }
    const std::uint64_t size = ElementSize(element.dataType);
    const std::uint64_t count = std::uint64_t{element.head.rows} * element.head.columns;
    const bool noValues = element.dataType == miDouble && element.head.columns == 0;
    if (element.dataSize % size != 0 || element.dataSize / size != count || noValues) {
        ExplainDataSize(Add(ErrorOf(M::InvalidDataBlockSize, Quoted(element.name).c_str()), start + 4, 4), element);
        return false;
    }
    if (element.head.byteCount == fixedSize + element.nameSize + element.dataSize) return true;
    ExplainWholeSize(Add(ErrorOf(M::InvalidWholeBlockSize, Quoted(element.name).c_str()), element.start + 4, 4),
                     element);
    return false;
}

bool ResultsMatCheck::CheckValues(const MatElement& element) {
    if (values_) {
        Diagnostic& error = Add(ErrorOf(M::TooManyVariablesDefined), element.start, 4);
        AddNote(error,
                "A file holds one matrix of values, stored as miDOUBLE; " + element.called +
                    " is the second one. The first is " + values_->called + ".",
                findings_.PlaceAt(values_->start), 4);
        if (!indices_) AddNote(error, "Indices must be stored as 16-bit integers (miINT16).");
        if (!indices_) AddNote(error, howToStoreIndices);
        return false;
    }
    if (element.head.columns > maxValueColumns) {
        Diagnostic& error = Add(ErrorOf(M::TooManyColumnsMat), element.start + 36, 4);
        AddNote(error, "The values in " + element.called + " have " + Counted(element.head.columns, "column") +
                           "; they may have " + std::to_string(maxValueColumns) + ".");
        if (element.head.rows <= maxValueColumns) AddNote(error, "Every cube is a row: transpose the matrix.");
        return false;
    }
    values_ = element;
    return CheckLeft(element);
}

bool ResultsMatCheck::CheckIndices(const MatElement& element) {
    if (indices_) {
        Diagnostic& error = Add(ErrorOf(M::TooManyVariablesDefined), element.start, 4);
        AddNote(error,
                "A file holds one matrix of indices, stored as miINT16; " + element.called +
                    " is the second one. The first is " + indices_->called + ".",
                findings_.PlaceAt(indices_->start), 4);
        return false;
    }
    if (element.head.columns < leastIndexColumns) {
        Diagnostic& error = Add(ErrorOf(M::UnsupportedMatrixFormat), element.start + 36, 4);
        AddNote(error, "The indices in " + element.called + " have " + Counted(element.head.columns, "column") +
                           "; the first three are the coordinates x, y and z.");
        return false;
    }
    indices_ = element;
    return CheckLeft(element);
}

bool ResultsMatCheck::CheckLeft(const MatElement& element) {
    if (size_ >= element.End()) return true;
    return AddShort("the data of " + element.called + ", which is " + ShapeOf(element), element.DataStart(),
                    element.dataSize);
}

void ResultsMatCheck::CheckWhole() {
    const std::uint32_t valueRows = values_ ? values_->head.rows : 0;
    const std::uint32_t indexRows = indices_ ? indices_->head.rows : 0;
    if (valueRows == indexRows) return CheckBox();
    const bool both = values_ && indices_;
    Diagnostic& error = Add(ErrorOf(M::DifferentRowCount), both ? indices_->start + 32 : size_, both ? 4 : 0);
    if (both) {
        AddNote(error, "The indices in " + indices_->called + " are " + ShapeOf(*indices_) + ".");
        AddNote(error, "The values in " + values_->called + " are " + ShapeOf(*values_) + ".",
                findings_.PlaceAt(values_->start + 32), 4);
        AddNote(error, "Both must have one row per cube.");
    } else if (values_) {
        AddNote(error, "The file holds values only (" + values_->called + ", " + ShapeOf(*values_) +
                           "): there must be a matrix of indices with a row for each of theirs, stored as miINT16.");
        AddNote(error, howToStoreIndices);
    } else {
        AddNote(error, "The file holds indices only (" + indices_->called + ", " + ShapeOf(*indices_) +
                           "): there must be a matrix of values with a row for each of theirs, stored as miDOUBLE.");
    }
}

/// Tells of a box of cubes that is too large to number its cells.
void ResultsMatCheck::CheckBox() {
    if (!indices_) return;
    CellBox box;
    std::vector<short> piece(std::size_t{1} << 16U);
    const std::uint64_t rows = indices_->head.rows;
    const StopFlag stop(findings_.Options().stop);
    for (std::size_t axis = 0; axis < leastIndexColumns; ++axis) {
        for (std::uint64_t row = 0; row < rows; row += piece.size()) {
            stop.Check();
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), rows - row));
            const std::uint64_t offset = indices_->DataStart() + (axis * rows + row) * sizeof(short);
            if (!ReadAt(offset, piece.data(), count * sizeof(short))) return;
            for (std::size_t i = 0; i < count; ++i) {
                const std::uint64_t at = offset + i * sizeof(short);
                box.Include(axis, piece[i], {at, 1, at + 1});
            }
        }
    }
    box.AddError(findings_, sizeof(short));
}

bool ResultsMatCheck::ReadAt(std::uint64_t offset, void* buffer, std::size_t size) {
    return file_.Seek(offset) && file_.Read(buffer, size) == size;
}

Diagnostic& ResultsMatCheck::Add(const Exception& error, std::uint64_t offset, std::uint64_t length) {
    // Only one error is ever found, so that there is no limit to be met.
    return *findings_.Add(error, findings_.PlaceAt(offset), length);
}

bool ResultsMatCheck::AddShort(const std::string& what, std::uint64_t offset, std::uint64_t due) {
    Diagnostic& error = Add(Unreadable(findings_), size_, 0);
    const std::uint64_t lacking = offset + due - size_;
    AddNote(error, "The file ends here and lacks " + Counted(lacking, "byte") + " of " + what + ".");
    AddNote(error, "That begins here and has " + Counted(due, "byte") + ".", findings_.PlaceAt(offset));
    return false;
}

}  // namespace orvalo
