#pragma once

#include <string>

/// What a file on the command line holds.
enum class FileKind { model, results };

/// Tells the kind by the content, whatever the file is called; a byte order mark is passed over. In this order:
/// - it begins with the text of a MATLAB header, or as the HDF5 files do that later versions write: results;
/// - its first line begins with the names x, y, z, f: results;
/// - its first line is a comment, or its first word is the name of a section, perhaps misspelt: a model, unless the
///   first line holds several names between tabs and the second as many numbers;
/// - its first line holds several names between tabs, or one above a line with one number: results;
/// - anything else counts as a model, so that the model reader says what is wrong with it. So do files that cannot be
///   read.
FileKind DetectFileKind(const std::string& path);
