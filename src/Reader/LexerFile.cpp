#include "Reader/LexerFile.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "Common/Bytes.h"
#include "Common/Raise.h"

namespace orvalo {

namespace {

/// Where the line that continues after `text` starts: an offset in it, or npos when the line began before it. Lines
/// may be as long as a file, so eight bytes are looked at at once.
std::size_t LastLineStart(std::string_view text) {
    while (text.size() >= 8) {
        const std::uint64_t differences = LoadEight(text.data() + text.size() - 8) ^ EightTimes('\n');
        if (BytesBelow(differences, 1) != 0) break;
        text.remove_suffix(8);
    }
    const std::size_t lineFeed = text.rfind('\n');
    return lineFeed == std::string_view::npos ? lineFeed : lineFeed + 1;
}

}  // namespace

void LexerFile::Open(std::size_t bufferSize) {
    if (!stream_.Open(path)) ORVALO_RAISE(LexerFile, ReaderMessages::ErrorOpeningInputFile, Quoted(path).c_str());
    // A small file gets a small buffer, with room for the read that finds its end: a model may nest very many.
    bufferSize_ = bufferSize;
    if (const auto size = stream_.Size()) {
        bufferSize_ = static_cast<std::size_t>(std::clamp<std::uint64_t>(*size + 1, 1, bufferSize));
    }
    buffer_.reset(new (std::nothrow) char[leadingSlack + bufferSize_ + scanningSlack]{});
    if (!buffer_) ORVALO_RAISE(LexerFile, ReaderMessages::OutOfMemory);
    cursor = end = Begin();
    line = 1;
}

void LexerFile::Close() noexcept {
    stream_.Close();
    buffer_.reset();
    cursor = end = nullptr;
}

unsigned char LexerFile::GetAtEnd() {
    // Short of the end it is a NUL byte of the file, which ends it.
    if (cursor != end || !Refill()) return 0;
    return Get();
}

bool LexerFile::Refill() {
    if (exhausted_) return false;
    stop_.Check();
    if (markColumn_ == 0) markColumn_ = ColumnOf(markOffset_);
    const std::string_view done(Begin(), static_cast<std::size_t>(end - Begin()));
    if (const std::size_t start = LastLineStart(done); start != std::string_view::npos) {
        lineStart_ = bufferOffset_ + start;
    }
    bufferOffset_ += done.size();
    cursor = end = Begin();
    *Begin() = '\0';

    const auto got = stream_.Read(Begin(), bufferSize_);
    if (!got) ORVALO_RAISE(LexerFile, ReaderMessages::ErrorReadingInputFile, Quoted(path).c_str());
    if (*got < bufferSize_) {
        exhausted_ = true;
        stream_.Close();  // Many files may be open at once while includes nest.
    }
    Begin()[*got] = '\0';
    end = Begin() + *got;
    return *got > 0;
}

std::uint64_t LexerFile::ColumnOf(std::uint64_t offset) const noexcept {
    const std::string_view before(Begin(), static_cast<std::size_t>(offset - bufferOffset_));
    const std::size_t start = LastLineStart(before);
    return (start == std::string_view::npos ? offset - lineStart_ : before.size() - start) + 1;
}

InputPlace LexerFile::MarkedPlace() const noexcept {
    InputPlace place;
    place.offset = markOffset_;
    place.line = markLine_;
    place.column = markColumn_ != 0 ? markColumn_ : ColumnOf(markOffset_);
    try {
        place.path = path;
    } catch (const std::bad_alloc&) {
        place.path.clear();
    }
    return place;
}

}  // namespace orvalo
