#pragma once

#include <string>
#include <vector>

/// The path of a model and those of all files that it includes, directly or not, as they are found in `directory`,
/// whether they exist or not. Looked up loosely, without reading the model as such: an include in a comment counts too.
std::vector<std::string> WithIncludedFiles(const std::string& path, const std::string& directory);

/// The same for a model that includes files from its own directory, as models do.
std::vector<std::string> WithIncludedFiles(const std::string& path);
