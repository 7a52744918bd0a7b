#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>

namespace orvalo {

namespace {

// A text that does not fit is a fault of the library, never a silently shortened message.
template <std::size_t Size>
std::string FormatBounded(const char* format, std::va_list arguments) {
    char buffer[Size];
    const int length = std::vsnprintf(buffer, Size, format, arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= Size) std::abort();
    return {buffer, static_cast<std::size_t>(length)};
}

constexpr std::size_t locatedTextSize = 1024;

std::string FormatLocated(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = FormatBounded<locatedTextSize>(format, arguments);
    va_end(arguments);
    return text;
}

constexpr std::size_t longestFileName = 4096;

std::string FileNamePart(const std::string& sourcePath) {
    const std::size_t separator = sourcePath.rfind('\\');
    return separator == std::string::npos ? sourcePath : sourcePath.substr(separator + 1, longestFileName);
}

}  // namespace

Exception::Exception(const std::string& file, int line, int code, const char* format, ...)
    : file_(FileNamePart(file)), line_(line), code_(code) {
    std::va_list arguments;
    va_start(arguments, format);
    what_ = FormatBounded<4096>(format, arguments);
    va_end(arguments);
}

Exception::Exception(Exception& inner, const std::string& fileName, int line, int column)
    : what_(FormatLocated(ReaderMessages::FileLineColumn.format, fileName.c_str(), line, column, inner.what_.c_str())),
      file_(inner.file_),
      line_(inner.line_),
      code_(inner.code_) {}

Exception::~Exception() = default;

const std::string& Exception::description() {
    description_ = FormatLocated(ReaderMessages::SourceCodePlace.format, what_.c_str(), file_.c_str(), line_);
    return description_;
}

}  // namespace orvalo
