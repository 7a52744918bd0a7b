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

void LexerFile::OpenAt(const FilePlace& from, std::size_t bufferSize) {
    Open(bufferSize);
    if (!stream_.Seek(from.offset)) {
        ORVALO_RAISE(LexerFile, ReaderMessages::ErrorReadingInputFile, Quoted(path).c_str());
    }
    bufferOffset_ = from.offset;
    lineStart_ = from.offset - (from.column - 1);
    line = from.line;
}

void LexerFile::Close() noexcept {
    stream_.Close();
    buffer_.reset();
    cursor = end = nullptr;
}

void LexerFile::GiveUp() noexcept {
    failed_ = false;
    exhausted_ = true;
    stream_.Close();
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
    ReadBuffer();
    return end > Begin();
}

void LexerFile::ReadBuffer() {
    cursor = end = Begin();
    *Begin() = '\0';
    const auto got = stream_.Read(Begin(), bufferSize_);
    failed_ = !got;
    if (failed_) ORVALO_RAISE(LexerFile, ReaderMessages::ErrorReadingInputFile, Quoted(path).c_str());
    if (*got < bufferSize_) {
        exhausted_ = true;
        stream_.Close();  // Many files may be open at once while includes nest.
    }
    Begin()[*got] = '\0';
    end = Begin() + *got;
}

void LexerFile::MoveTo(std::uint64_t offset, std::uint64_t lineStart) {
    if (offset > bufferOffset_ + static_cast<std::uint64_t>(end - Begin())) {
        stop_.Check();
        if (markColumn_ == 0) markColumn_ = ColumnOf(markOffset_);
        bufferOffset_ += (offset - 1 - bufferOffset_) / bufferSize_ * bufferSize_;
        lineStart_ = lineStart;
        failed_ = !stream_.Seek(bufferOffset_);
        if (failed_) ORVALO_RAISE(LexerFile, ReaderMessages::ErrorReadingInputFile, Quoted(path).c_str());
        ReadBuffer();
    }
    // A file that has become shorter ends where it does.
    cursor = Begin() + std::min<std::uint64_t>(offset - bufferOffset_, static_cast<std::uint64_t>(end - Begin()));
    lineStart_ = std::min(lineStart_, Offset());
}

std::uint64_t LexerFile::ColumnOf(std::uint64_t offset) const noexcept {
    const std::string_view before(Begin(), static_cast<std::size_t>(offset - bufferOffset_));
    const std::size_t start = LastLineStart(before);
    return (start == std::string_view::npos ? offset - lineStart_ : before.size() - start) + 1;
}

std::string_view LexerFile::TextFromMark() const noexcept {
    if (cursor == nullptr || markOffset_ < bufferOffset_) return {};
    const char* const mark = Begin() + (markOffset_ - bufferOffset_);
    return {mark, static_cast<std::size_t>(end - mark)};
}

std::string_view LexerFile::TextSinceMark() const noexcept {
    const std::string_view text = TextFromMark();
    return text.substr(0, text.size() - std::min(text.size(), static_cast<std::size_t>(end - cursor)));
}

void LexerFile::ReturnToMark() noexcept {
    cursor = Begin() + (markOffset_ - bufferOffset_);
    uncountedLineFeeds = markLine_ - line;
}

std::string_view LexerFile::CurrentLine() const noexcept {
    const std::string_view before(Begin(), static_cast<std::size_t>(std::max<std::ptrdiff_t>(cursor - 1 - Begin(), 0)));
    const std::size_t start = LastLineStart(before);
    const char* const first = start == std::string_view::npos ? Begin() : Begin() + start;
    const std::string_view text(first, static_cast<std::size_t>(end - first));
    return text.substr(0, text.find('\n'));
}

std::string_view LexerFile::NextLine() const noexcept {
    const std::string_view current = CurrentLine();
    const char* const lineEnd = current.data() + current.size();
    const std::string_view rest(lineEnd, static_cast<std::size_t>(end - lineEnd));
    const std::string_view next = rest.substr(std::min<std::size_t>(1, rest.size()));
    return next.substr(0, next.find('\n'));
}

InputPlace LexerFile::MarkedPlace() const noexcept {
    const FilePlace marked = Marked();
    InputPlace place;
    place.offset = marked.offset;
    place.line = marked.line;
    place.column = marked.column;
    try {
        place.path = path;
    } catch (const std::bad_alloc&) {
        place.path.clear();
    }
    return place;
}

}  // namespace orvalo
