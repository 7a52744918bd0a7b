#include "Results/TextLines.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace orvalo {

namespace {

char* Find(char* begin, char* end, char wanted) {
    const void* found = begin == end ? nullptr : std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found == nullptr ? end : begin + (static_cast<const char*>(found) - begin);
}

}  // namespace

TextLines::TextLines(platform::InputFile& file, std::string_view alreadyRead, std::size_t readSize, StopFlag stop)
    : file_(file),
      readSize_(readSize),
      stop_(stop),
      buffer_(longestLine + 1 + readSize + readableBehind),
      begin_(buffer_.data()),
      searched_(begin_),
      nul_(begin_),
      dataEnd_(std::copy(alreadyRead.begin(), alreadyRead.end(), begin_)) {}

bool TextLines::Next(TextLine& line) {
    if (replaced_ != nullptr) *replaced_ = replacedByte_;
    replaced_ = nullptr;
    while (!HasWholeLine()) {
        if (!Fill()) break;
    }
    if (failed_ || begin_ == dataEnd_) return false;

    char* const lineFeed = searched_;
    const bool newline = lineFeed != dataEnd_;
    char* const contentEnd = newline && lineFeed != begin_ && lineFeed[-1] == '\r' ? lineFeed - 1 : lineFeed;
    if (contentEnd - begin_ + (newline ? 1 : 0) > longestLine) {
        line = Take(begin_ + longestLine, begin_ + longestLine, false);
    } else {
        line = Take(contentEnd, newline ? lineFeed + 1 : lineFeed, newline);
    }
    return true;
}

/// Whether a line feed has been found, or so many bytes without one that the last of them, should it be a carriage
/// return to be dropped, does not matter.
bool TextLines::HasWholeLine() {
    searched_ = Find(searched_, dataEnd_, '\n');
    return searched_ != dataEnd_ || dataEnd_ - begin_ > longestLine;
}

/// Reads on, after what is not handed out yet. False at the end.
bool TextLines::Fill() {
    if (ended_) return false;
    stop_.Check();
    char* const start = buffer_.data();
    if (static_cast<std::size_t>(start + buffer_.size() - dataEnd_) < readSize_ + readableBehind) {
        const std::ptrdiff_t moved = begin_ - start;
        std::memmove(start, begin_, static_cast<std::size_t>(dataEnd_ - begin_));
        for (char** const place : {&begin_, &searched_, &nul_, &dataEnd_}) *place -= moved;
    }
    const char* const before = dataEnd_;
    ReadOn();
    return dataEnd_ > before;
}

void TextLines::ReadOn() {
    const std::optional<std::size_t> got = file_.Read(dataEnd_, readSize_);
    failed_ = !got;
    ended_ = got.value_or(0) < readSize_;
    dataEnd_ += got.value_or(0);
    std::memset(dataEnd_, 0, readableBehind);
}

void TextLines::MoveTo(std::uint64_t offset, std::uint64_t lines) {
    std::uint64_t start = nextPlace_.offset;
    const std::uint64_t end = Ahead().EndOffset();
    if (offset > end) {
        stop_.Check();
        // The portion in which reading on would have come to the byte before that place.
        start = end + (offset - 1 - end) / readSize_ * readSize_;
        begin_ = dataEnd_ = buffer_.data();
        if (file_.Seek(start)) {
            ReadOn();
        } else {
            failed_ = ended_ = true;
        }
    }
    // A file that has become shorter ends where it does.
    begin_ += std::min<std::uint64_t>(offset - start, static_cast<std::uint64_t>(dataEnd_ - begin_));
    searched_ = nul_ = begin_;
    nextPlace_ = {offset, nextPlace_.line + lines, 1};
}

/// The line from begin_ to `end`; the next one begins at `next`.
TextLine TextLines::Take(char* end, char* next, bool newline) {
    TextLine line{begin_, end, newline};
    nul_ = Find(std::max(nul_, begin_), dataEnd_, '\0');
    if (nul_ < end) {
        line = {begin_, nul_, false};
    } else if (!newline) {
        replaced_ = end;
        replacedByte_ = *end;
        *end = '\0';
    }
    const auto taken = static_cast<std::uint64_t>(next - begin_);
    place_ = nextPlace_;
    nextPlace_.offset += taken;
    nextPlace_.line += newline ? 1 : 0;
    nextPlace_.column = newline ? 1 : nextPlace_.column + taken;
    begin_ = next;
    searched_ = std::max(searched_, next);
    return line;
}

}  // namespace orvalo
