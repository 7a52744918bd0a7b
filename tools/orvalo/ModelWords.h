#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Splits the start of a model file into words, loosely: enough to see what the file is about, never to judge it.
class ModelWords {
public:
    explicit ModelWords(std::string_view text) : text_(text) {}

    /// The next word in lower case; one that stood in quotes begins with a quote. Empty at the end.
    std::string Next();

private:
    std::string_view TakeUntil(std::string_view ends);
    void SkipBlanksAndComments();

    std::string_view text_;
};

/// Whether a file may be read once more: a pipe may not, and would be waited for.
bool MayBeReread(const std::string& path);

/// At most the first `limit` bytes of a file; empty where it cannot be read, or only once.
std::string ReadHead(const std::string& path, std::size_t limit);
