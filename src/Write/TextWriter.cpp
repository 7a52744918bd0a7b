#include "Write/TextWriter.h"

#include <algorithm>

#include "Write/ShortestDecimal.h"

namespace orvalo {

TextWriter::TextWriter(OutputFile& file, Progress& progress, StopFlag stop)
    : file_(file),
      progress_(progress),
      stop_(stop),
      buffer_(new char[mostRoom]),
      bufferEnd_(buffer_.get() + mostRoom),
      end_(buffer_.get()) {}

void TextWriter::Text(std::string_view text) {
    while (!text.empty()) {
        const std::string_view part = text.substr(0, mostRoom);
        Take(std::copy(part.begin(), part.end(), Room(part.size())));
        text.remove_prefix(part.size());
    }
}

void TextWriter::Number(double value) {
    Take(WriteDecimal(Room(decimalRoom), value));
}

void TextWriter::Integer(std::uint64_t value) {
    Take(WriteInteger(Room(decimalRoom), value));
}

void TextWriter::Flush() {
    stop_.Check();
    file_.Write(buffer_.get(), static_cast<std::size_t>(end_ - buffer_.get()));
    end_ = buffer_.get();
}

}  // namespace orvalo
