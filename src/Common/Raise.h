#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>

namespace orvalo {

/// The source modules that errors name. They are part of what clients see, so a grammar keeps the module that it
/// reports under wherever its code stands. The text is the module's path from the source root, with a backslash.
namespace module {
inline constexpr const char* Cubes = "Model\\Cubes";
inline constexpr const char* PiezoData = "Model\\PiezoData";
inline constexpr const char* Set = "Model\\Set";
inline constexpr const char* Table = "Model\\Table";
inline constexpr const char* Lexer = "Reader\\Lexer";
inline constexpr const char* LexerFile = "Reader\\LexerFile";
inline constexpr const char* ReaderCore = "Reader\\ReaderCore";
inline constexpr const char* ReaderMisc = "Reader\\ReaderMisc";
inline constexpr const char* SectionReader = "Reader\\SectionReader";
inline constexpr const char* ActuatorReader = "Reader\\ActuatorReader";
inline constexpr const char* PiezoReader = "Reader\\PiezoReader";
inline constexpr const char* OutputReader = "Reader\\OutputReader";
inline constexpr const char* TableReader = "Reader\\TableReader";
inline constexpr const char* Reader = "Reader\\Reader";
inline constexpr const char* ResultsReader = "Reader\\ResultsReader";
inline constexpr const char* ResultsMat = "Results\\ResultsMat";
inline constexpr const char* ResultsTxt = "Results\\ResultsTxt";
inline constexpr const char* WriteModel = "Write\\WriteModel";
inline constexpr const char* WriteResults = "Write\\WriteResults";
}  // namespace module

/// Lines of those modules that are fixed, whatever line raises: clients tell by them what was refused, or which buffer
/// did not fit.
namespace knownLine {
inline constexpr int CubesBuffer = 56;
inline constexpr int TemperaturesBuffer = 62;
inline constexpr int DampingCubesBuffer = 71;
inline constexpr int PiezoPointDuplicated = 35;
inline constexpr int PiezoPoint = 41;
inline constexpr int SetPoints = 14;
inline constexpr int TableSamples = 23;
}  // namespace knownLine

/// Throws the catalogue entry `message`, its conversions filled with `arguments`, as raised by `sourceModule` in
/// `line`.
template <class... Arguments>
[[noreturn]] void Raise(const char* sourceModule, int line, const ExceptionMessage& message, Arguments... arguments) {
    throw Exception(sourceModule, line, message.code, message.format, arguments...);
}

/// The last bytes of a text that a file or a caller supplied: the most that a message may quote of it, so that no
/// input can overflow the formatter. The tail is kept because it names the file.
inline std::string Quoted(std::string_view text) {
    constexpr std::size_t longest = 512;
    return std::string(text.size() > longest ? text.substr(text.size() - longest) : text);
}

}  // namespace orvalo

/// Raises a catalogue entry from this line: ORVALO_RAISE(Lexer, LexInvalidChar).
#define ORVALO_RAISE(sourceModule, ...) ::orvalo::Raise(::orvalo::module::sourceModule, __LINE__, __VA_ARGS__)
