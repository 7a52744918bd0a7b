#pragma once

#include <string>
#include <string_view>

#include <Orvalo3DReader/Check/Diagnostic.h>

#include "Reader/WordList.h"

/// What explains errors of one subject each: it adds notes and fixes to a diagnostic that is just being made, so that
/// the reading still stands at the error.
namespace orvalo {

class ErrorCollector;
struct ReadPlace;

/// Bytes that begin no token, or do not belong into a word, a name or a number.
void ExplainCharacter(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainCharacterInWord(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainCharacterInNumber(Diagnostic& diagnostic, ErrorCollector& errors);
/// A name, or a number, that the end of a line or of the file cuts off.
void ExplainOpenName(Diagnostic& diagnostic, ErrorCollector& errors);
/// What stands before the place on its line, where that is why nothing fits: false when it is not.
bool ExplainNeighbours(Diagnostic& diagnostic, ErrorCollector& errors);

/// A word where one of a list is due: value words, components.
void ExplainWord(Diagnostic& diagnostic, ErrorCollector& errors);
/// A word where a property or END is due.
void ExplainKeyword(Diagnostic& diagnostic, ErrorCollector& errors);
/// What stands where a section is due.
void ExplainSectionName(Diagnostic& diagnostic, ErrorCollector& errors);

// What explanations are made of.

void AddNote(Diagnostic& diagnostic, std::string message);
void AddNote(Diagnostic& diagnostic, std::string message, const InputPlace& place, std::uint64_t length = 0);
/// Replaces what the diagnostic is about.
void AddFix(Diagnostic& diagnostic, std::string replacement);
/// Puts the words that would have been right into the diagnostic and tells of them; proposes the one that was most
/// likely meant.
void AddExpected(Diagnostic& diagnostic, ErrorCollector& errors, const WordList& words);
/// The word in the case in which `like` is written.
std::string InCaseOf(std::string_view word, std::string_view like);
/// "a, b or c".
std::string Listed(const WordList& words);

}  // namespace orvalo
