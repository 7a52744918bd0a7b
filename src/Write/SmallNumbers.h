#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "Write/ShortestDecimal.h"

namespace orvalo {

/// The numbers from 0 on, below 65536, as text with a separator after each: rows are made of them with a load and a
/// store for each number.
class SmallNumbers {
public:
    SmallNumbers(std::size_t count, char separator) : entries_(new std::uint64_t[count]) {
        for (std::size_t i = 0; i < count; ++i) {
            char text[decimalRoom] = {};
            char* const end = WriteInteger(text, i);
            *end = separator;
            text[7] = static_cast<char>(end + 1 - text);
            std::memcpy(&entries_[i], text, sizeof entries_[i]);
        }
    }

    /// Writes a number and its separator: eight bytes, of which it returns the place after those that count.
    char* Write(char* p, std::size_t number) const {
        const std::uint64_t entry = entries_[number];
        std::memcpy(p, &entry, sizeof entry);
        return p + (entry >> 56U);
    }

private:
    std::unique_ptr<std::uint64_t[]> entries_;
};

}  // namespace orvalo
