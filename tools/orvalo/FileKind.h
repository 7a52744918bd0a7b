#pragma once

#include <string>

/// What a file on the command line holds.
enum class FileKind { model, results };

/// Tells the kind by the content, whatever the file is called. In this order:
/// - it begins with the text of a MATLAB header: results;
/// - its first word, comments aside, is a section name or "include": a model;
/// - its first line starts with the names x, y, z, f, or its second line starts with a number: results;
/// - anything else counts as a model, so that the model reader says what is wrong with it. So do pipes, whose start
///   could not be read again, and files that cannot be read.
FileKind DetectFileKind(const std::string& path);
