#include "Check/MatElement.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "Check/Explanations.h"
#include "Check/ResultsFindings.h"
#include "Common/Bytes.h"

namespace orvalo {

namespace {

using namespace mat;

/// What stands where a number of the format does.
struct Meaning {
    std::uint32_t number;
    const char* name;
    /// How to come by an accepted file.
    const char* advice;
};

/// In advice, @ stands for the name of the matrix.
constexpr const char* asDouble = "Convert it to class double before saving: @ = double(@).";

/// Classes of matrices.
constexpr Meaning classes[] = {
    {1, "a cell array", "Save the matrices in it as variables of their own."},
    {2, "a struct", "Save its fields as variables of their own, such as val = @.val."},
    {3, "an object", "Save the matrices in it as variables of their own."},
    {4, "a text (class char)", "Leave it out of the file."},
    {5, "a sparse matrix", "Convert it before saving: @ = full(@)."},
    {7, "a matrix of class single", asDouble},
    {8, "a matrix of class int8", asDouble},
    {9, "a matrix of class uint8", asDouble},
    {10, "a matrix of class int16", asDouble},
    {11, "a matrix of class uint16", asDouble},
    {12, "a matrix of class int32", asDouble},
    {13, "a matrix of class uint32", asDouble},
    {14, "a matrix of class int64", asDouble},
    {15, "a matrix of class uint64", asDouble},
    {16, "a function handle", "Leave it out of the file."},
    {17, "an object", "Save the matrices in it as variables of their own."},
};

/// Types of stored data.
constexpr Meaning dataTypes[] = {
    {1, "8-bit integers (miINT8)", nullptr},
    {2, "unsigned 8-bit integers (miUINT8)", nullptr},
    {4, "unsigned 16-bit integers (miUINT16)", nullptr},
    {5, "32-bit integers (miINT32)", nullptr},
    {6, "unsigned 32-bit integers (miUINT32)", nullptr},
    {7, "single-precision numbers (miSINGLE)", asDouble},
    {12, "64-bit integers (miINT64)", nullptr},
    {13, "unsigned 64-bit integers (miUINT64)", nullptr},
};

struct Flag {
    std::uint32_t bit;
    const char* name;
    const char* advice;
};
constexpr Flag flags[] = {
    {0x0800, "is complex", "Save the real and the imaginary part as columns: @ = [real(@) imag(@)]."},
    {0x0400, "is marked as global", "Save a copy that is not global."},
    {0x0200, "is logical", asDouble},
};

template <std::size_t n>
const Meaning* Find(const Meaning (&meanings)[n], std::uint32_t number) {
    const auto* const found = std::find_if(std::begin(meanings), std::end(meanings),
                                           [&](const Meaning& meaning) { return meaning.number == number; });
    return found == std::end(meanings) ? nullptr : found;
}

bool IsDataType(std::uint32_t type) {
    return type == miDouble || type == miInt16 || Find(dataTypes, type) != nullptr;
}

std::uint32_t Swapped(std::uint32_t word) {
    return word >> 24U | (word >> 8U & 0xFF00U) | (word << 8U & 0xFF0000U) | word << 24U;
}

void MoveTo(Diagnostic& diagnostic, std::uint64_t offset, std::uint64_t length) {
    diagnostic.place.offset = offset;
    diagnostic.place.column = offset + 1;
    diagnostic.length = length;
}

std::string Subject(const MatElement& element) {
    std::string subject = element.called;
    subject[0] = subject[0] == 't' ? 'T' : subject[0];
    return subject;
}

void Advise(Diagnostic& diagnostic, const MatElement& element, std::string_view advice) {
    const auto isNamePart = [](char c) { return (ToLower(c) >= 'a' && ToLower(c) <= 'z') || IsDigit(c) || c == '_'; };
    const std::string& name = element.name;
    const bool usable = !name.empty() && name.size() < 64 && std::all_of(name.begin(), name.end(), isNamePart);
    std::string text;
    for (const char c : advice) text += c != '@' ? std::string(1, c) : usable ? name : "m";
    AddNote(diagnostic, std::move(text));
}

void ExplainArrayFlags(Diagnostic& diagnostic, const MatElement& element, std::uint32_t word) {
    const auto* const flag =
        std::find_if(std::begin(flags), std::end(flags), [&](const Flag& f) { return (word & f.bit) != 0; });
    const std::uint32_t number = word & 0xFFU;
    if (const Meaning* const meaning = Find(classes, number); meaning != nullptr) {
        AddNote(diagnostic, Subject(element) + " is " + meaning->name + "; only matrices of class double are read.");
        Advise(diagnostic, element, meaning->advice);
        if (number >= 8 && number <= 15) AddNote(diagnostic, howToStoreIndices);
    } else if (number == doubleArray && flag != std::end(flags)) {
        AddNote(diagnostic, Subject(element) + " " + flag->name + "; only real matrices without flags are read.");
        Advise(diagnostic, element, flag->advice);
    } else {
        AddNote(diagnostic, "These are no array flags of a real matrix of class double.");
    }
}

}  // namespace

void ExplainElementType(Diagnostic& diagnostic, const MatElement& element) {
    constexpr std::uint32_t compressed = 15;
    const std::uint32_t type = element.head.type;
    MoveTo(diagnostic, element.start, 4);
    if (type == compressed) {
        AddNote(diagnostic,
                "The variable that begins here is compressed (miCOMPRESSED), as MATLAB's save does by "
                "default (-v7).");
        AddNote(diagnostic, "Save it with -v6, which does not compress: save('results.mat', 'val', 'idx', '-v6').");
    } else if (Swapped(type) == miMatrix || Swapped(type) == compressed) {
        AddNote(diagnostic,
                "The file holds big-endian numbers; only little-endian ones are read. Save it again on a "
                "little-endian machine.");
    } else if (type == 0) {
        AddNote(diagnostic, "Zeros stand where a matrix is to begin: nothing may follow the data of a matrix.");
    } else {
        AddNote(diagnostic,
                "The number 14 (miMATRIX) must stand where a matrix begins; here stands " + std::to_string(type) + ".");
    }
}

void ExplainFixedWords(Diagnostic& diagnostic, const MatElement& element) {
    const auto& words = element.head.fixed;
    const auto [found, due] = std::mismatch(words.begin(), words.end(), accepted.begin());
    const auto i = static_cast<std::size_t>(found - words.begin());
    MoveTo(diagnostic, element.start + 8 + 4 * i, 4);
    if (i == 2) {
        ExplainArrayFlags(diagnostic, element, *found);
    } else if (i == 3) {
        AddNote(diagnostic, "The second word of the array flags of " + element.called + " is " +
                                std::to_string(*found) + "; it must be 0. Octave writes 1 here.");
        AddNote(diagnostic, "Save the matrices with another program, or write the results as tab-separated text.");
    } else if (i == 5 && *found > 8 && *found % 4 == 0) {
        AddNote(diagnostic, Subject(element) + " has " + std::to_string(*found / 4) +
                                " dimensions; only matrices of two are read: rows and columns.");
        Advise(diagnostic, element, "Bring it into one row per cube before saving: @ = reshape(@, n, []).");
    } else {
        AddNote(diagnostic, "Here must stand " + std::to_string(*due) + ", in the head of every matrix.");
    }
}

void ExplainDataType(Diagnostic& diagnostic, const MatElement& element) {
    MoveTo(diagnostic, element.DataTagStart(), 4);
    const std::uint32_t type = element.dataType;
    // Data of up to four bytes stands in its tag, and its size beside the type.
    const Meaning* const meaning = Find(dataTypes, type & 0xFFFFU);
    // Four bytes too early, the type stands where the size does.
    if (type == 0 && element.nameSize % 8 == 4 && IsDataType(element.dataSize & 0xFFFFU)) {
        AddNote(diagnostic, "The name of " + element.called + ", " + Counted(element.nameLength, "byte") +
                                ", is padded to a multiple of eight bytes, as programs usually do; the reader takes "
                                "it to be padded to four.");
        AddNote(diagnostic,
                "Rename the matrix: names of 1 to 8, 13 to 16, 21 to 24 bytes are padded the same in both ways.");
    } else if (meaning != nullptr) {
        AddNote(diagnostic, Subject(element) + " is stored as " + meaning->name +
                                "; values must be stored as miDOUBLE, indices as miINT16.");
        if (meaning->advice != nullptr) return Advise(diagnostic, element, meaning->advice);
        AddNote(
            diagnostic,
            "MATLAB's save -v6 stores a matrix of whole numbers in the smallest type that takes them all. Values "
            "must hold a fraction; indices a number that needs 16 bits and a sign, such as a fourth column of -1000.");
    } else {
        AddNote(diagnostic,
                "Here must stand the type of the data: 9 (miDOUBLE) or 3 (miINT16), not " + std::to_string(type) + ".");
    }
}

void ExplainDataSize(Diagnostic& diagnostic, const MatElement& element) {
    const Head& head = element.head;
    const std::string shape = std::to_string(head.rows) + " x " + std::to_string(head.columns);
    MoveTo(diagnostic, element.DataTagStart() + 4, 4);
    if (element.dataType == miDouble && head.columns == 0 && element.dataSize == 0) {
        AddNote(diagnostic, Subject(element) + " is empty: " + shape + ". Leave it out, or give it columns.");
        return;
    }
    const bool overflows = head.columns != 0 && head.rows > 0xFFFFFFFFU / head.columns;
    const std::uint64_t count = std::uint64_t{head.rows} * head.columns;
    AddNote(diagnostic,
            Subject(element) + " has " + shape + " numbers" +
                (overflows ? "" : ", which take " + Counted(count * ElementSize(element.dataType), "byte")) +
                "; its data has " + Counted(element.dataSize, "byte") + ".");
}

void ExplainWholeSize(Diagnostic& diagnostic, const MatElement& element) {
    MoveTo(diagnostic, element.start + 4, 4);
    const std::uint64_t due = fixedSize + element.nameSize + element.dataSize;
    const std::uint64_t padding = (8 - element.dataSize % 8) % 8;
    if (padding != 0 && element.head.byteCount == due + padding) {
        AddNote(diagnostic, "The data of " + element.called + ", " + Counted(element.dataSize, "byte") +
                                ", is padded to a multiple of eight, as programs usually do. Nothing may follow it.");
        AddNote(diagnostic,
                "Give it a number of elements that four divides: with four columns of indices nothing is padded.");
    } else {
        AddNote(diagnostic, Subject(element) + " counts " + Counted(element.head.byteCount, "byte") +
                                "; its parts have " + std::to_string(due) + ".");
    }
}

}  // namespace orvalo
