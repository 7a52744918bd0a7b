#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// One entry of the message catalogue (ReaderMessages): its stable number and its printf-style text.
/// `format` points to static storage.
struct ExceptionMessage {
    /// The stable number.
    int code;
    /// The text, with the conversions of printf.
    const char* format;
};

/// The type of all that the library throws, by itself or as the base of ReadError and Stopped. It carries a finished
/// message, the catalogue code that clients can switch on, and the library source place that raised it.
class ORVALO3DREADER_EXPORT Exception {
public:
    /// Formats `format` with the variable arguments, as printf does, into the message. Of `file`, a source path
    /// with backslashes, the part after the last backslash is kept. A message of more than 4095 characters ends
    /// the process: whoever raises keeps what comes from files or callers short.
    Exception(const std::string& file, int line, int code, const char* format, ...);

    /// The same failure as `inner`, with the input file, line and column at which reading stopped put before its
    /// message. Code and library source place stay those of `inner`. A message of more than 1023 characters ends
    /// the process. Line and column are counted in 64 bits and reported in the low 32, as a signed number: beyond 2^31
    /// bytes in one line the column turns negative.
    Exception(Exception& inner, const std::string& fileName, int line, int column);

    /// Copies all, a description that was composed included.
    Exception(const Exception&) = default;
    /// As the copy constructor.
    Exception& operator=(const Exception&) = default;
    virtual ~Exception();

    /// The finished message.
    const std::string& what() const { return what_; }
    /// The library source file that raised it, without its folder.
    const std::string& file() const { return file_; }
    /// The line in that source file.
    int line() const { return line_; }
    /// The number of the message in the catalogue.
    int code() const { return code_; }
    /// The message followed by the library source place, composed anew at each call. The reference stays valid as
    /// long as the object. A text of more than 1023 characters ends the process.
    const std::string& description();

private:
    std::string what_;
    std::string file_;
    std::string description_;
    int line_;
    int code_;
};

}  // namespace orvalo
