#include "PageBlocks.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "export/Deflater.h"

namespace {

std::string Base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            const std::uint32_t byte = i + j < bytes.size() ? static_cast<unsigned char>(bytes[i + j]) : 0;
            group = (group << 8U) | byte;
        }
        for (unsigned int shift = 18; text.size() % 4 < 3; shift -= 6) text += digits[(group >> shift) & 63U];
        text += digits[group & 63U];
    }
    for (std::size_t i = 0; i < (3 - bytes.size() % 3) % 3; ++i) text[text.size() - 1 - i] = '=';
    return text;
}

}  // namespace

std::string PackBytes(std::string_view bytes) {
    std::string packed;
    Deflater(Deflater::Form::zlib).Write(bytes, true, [&](std::string_view part) { packed += part; });
    return Base64(packed);
}

std::size_t PageBlocks::AddPacked(std::string packed) {
    size_ += packed.size();
    blocks_.push_back(std::move(packed));
    return blocks_.size() - 1;
}
