#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Compresses bytes as the browser's own decompressor takes them, and writes them in base64, as a page can hold them.
std::string PackBytes(std::string_view bytes);

/// Data of a page that its facts name by number.
class PageBlocks {
public:
    /// Takes bytes that are packed, and gives their number.
    std::size_t AddPacked(std::string packed);
    std::size_t Add(std::string_view bytes) { return AddPacked(PackBytes(bytes)); }

    /// The bytes that they take.
    std::size_t Size() const { return size_; }
    const std::vector<std::string>& All() const { return blocks_; }

private:
    std::vector<std::string> blocks_;
    std::size_t size_ = 0;
};
