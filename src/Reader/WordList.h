#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace orvalo {

/// The words of a table: the member `word` of each row, in lower case, whatever else the rows say of them.
class WordList {
public:
    template <class Row>
    constexpr WordList(const Row* rows, std::size_t size)
        : rows_(rows),
          size_(size),
          word_([](const void* table, std::size_t i) { return static_cast<const Row*>(table)[i].word; }) {}

    template <class Row, std::size_t n>
    constexpr WordList(const Row (&rows)[n])  // NOLINT(google-explicit-constructor): every table is a list of words.
        : WordList(rows, n) {}

    std::size_t size() const { return size_; }
    std::string_view operator[](std::size_t i) const { return word_(rows_, i); }

    /// The place of `text` in the list. A text that goes on after a whole word passes the next word uncounted: readers
    /// have always searched so.
    std::optional<std::size_t> Find(std::string_view text) const {
        std::size_t place = 0;
        for (std::size_t i = 0; i < size_; ++i, ++place) {
            const std::string_view word = word_(rows_, i);
            if (text == word) return place;
            if (text.substr(0, word.size()) == word) ++i;
        }
        return std::nullopt;
    }

private:
    const void* rows_;
    std::size_t size_;
    std::string_view (*word_)(const void* table, std::size_t i);
};

/// Whether Find finds each row of a table by its word, which must be one that a token can be.
template <class Row, std::size_t n>
constexpr bool HasWords(const Row (&rows)[n]) {
    for (std::size_t i = 0; i < n; ++i) {
        const std::string_view word = rows[i].word;
        if (word.empty()) return false;
        for (const char c : word) {
            if (!(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9')) return false;
        }
        for (std::size_t other = 0; other < n; ++other) {
            if (other != i && rows[other].word.substr(0, word.size()) == word) return false;
        }
    }
    return true;
}

}  // namespace orvalo
