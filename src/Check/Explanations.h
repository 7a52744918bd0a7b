#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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
/// A number that a comma cuts off from its decimals: false where it is none.
bool ExplainCommaAfter(Diagnostic& diagnostic, ErrorCollector& errors);

/// A word where one of a list is due: value words, components.
void ExplainWord(Diagnostic& diagnostic, ErrorCollector& errors);
/// A word where a property or END is due.
void ExplainKeyword(Diagnostic& diagnostic, ErrorCollector& errors);
/// The name of a section that stands where a property of the same name may, since the END before it is missing: false
/// where it is none.
bool ExplainSectionAsProperty(Diagnostic& diagnostic, ErrorCollector& errors);
/// What stands where a section is due.
void ExplainSectionName(Diagnostic& diagnostic, ErrorCollector& errors);

/// A value that is no number, or none that its property takes; a count; the ID of a section or a table.
void ExplainNumber(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainRange(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainCount(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainID(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSwitch(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainFormat(Diagnostic& diagnostic, ErrorCollector& errors);
/// What asks for more memory than there is.
void ExplainMemory(Diagnostic& diagnostic, ErrorCollector& errors);

/// Coordinates, those of rows too.
void ExplainCoordinate(Diagnostic& diagnostic, ErrorCollector& errors);

/// Properties that are not given, given twice, or that do not go together.
void ExplainMissingProperties(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSecondTable(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainAppending(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainInit(Diagnostic& diagnostic, ErrorCollector& errors);

/// The rows of MATERIALS.
void ExplainMaterialNumber(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainMaterialReused(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainMaterialFormat(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainMaterialName(Diagnostic& diagnostic, ErrorCollector& errors);
/// A number that is missing in a material: false where the error is elsewhere.
bool ExplainMaterialNumbers(Diagnostic& diagnostic, ErrorCollector& errors);

/// Rows of cells and of points, samples of tables: what stands in them, and how many there are.
void ExplainRowField(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainRowMaterial(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainRowNumber(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainTooFewRows(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainTooManyRows(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSamples(Diagnostic& diagnostic, ErrorCollector& errors);
/// What is likely a misspelt END of rows: false for anything else.
bool ExplainMisspeltEnd(Diagnostic& diagnostic, ErrorCollector& errors);
/// An END that is missing.
void ExplainNoEnd(Diagnostic& diagnostic, ErrorCollector& errors);

/// The points and tables of a patch.
void ExplainPiezoDirection(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainPointReused(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainPoint(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainPointCount(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSampleCounts(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainPiezoTable(Diagnostic& diagnostic, ErrorCollector& errors);

/// Sections: their order, what a model must have, IDs that are used twice or not defined.
void ExplainOrder(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSecondSection(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainNeededSection(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainReusedID(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainUndefinedTable(Diagnostic& diagnostic, ErrorCollector& errors);

/// Files that cannot be opened or read, and includes.
void ExplainFile(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainIncludeName(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainSecondInclude(Diagnostic& diagnostic, ErrorCollector& errors);
void ExplainPath(Diagnostic& diagnostic, ErrorCollector& errors);

// What explanations are made of.

/// What is no number where one is due: the value is missing, quoted, or stands after a second `=`. False for others.
bool ExplainNoNumber(Diagnostic& diagnostic, ErrorCollector& errors);
/// The shortest text of a number.
std::string Shown(double number);
/// "'a', 'b' and 'c'".
std::string Joined(const std::vector<std::string_view>& words);
/// "1 row", "2 rows".
std::string Counted(std::uint64_t count, const char* what);
/// Whether what stands in the file could be a name without its quotes: then makes it the subject and quotes it.
bool QuoteName(Diagnostic& diagnostic, ErrorCollector& errors);
/// Tells of the file in the directory of the path that was most likely meant; `included` where a model names it.
void TellSimilar(Diagnostic& diagnostic, const std::string& path, bool included);
/// Moves a place along its line.
InputPlace Moved(InputPlace place, std::size_t bytes);

void AddNote(Diagnostic& diagnostic, std::string message);
void AddNote(Diagnostic& diagnostic, std::string message, const InputPlace& place, std::uint64_t length = 0);
/// Replaces what the diagnostic is about.
void AddFix(Diagnostic& diagnostic, std::string replacement);
/// Puts the words that would have been right into the diagnostic and tells of them; proposes the one that was most
/// likely meant.
void AddExpected(Diagnostic& diagnostic, ErrorCollector& errors, const WordList& words, bool capitals = false);
/// The word in the case in which `like` is written.
std::string InCaseOf(std::string_view word, std::string_view like);
/// "a, b or c"; END always in capitals.
std::string Listed(const WordList& words, bool capitals = false);

}  // namespace orvalo
