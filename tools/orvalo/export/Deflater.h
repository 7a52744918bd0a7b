#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>

#include <zlib.h>

/// Compresses data as it comes.
class Deflater {
public:
    enum class Form {
        /// With the header and the checksum of zlib.
        zlib,
        /// Without, as in ZIP archives.
        raw,
    };

    explicit Deflater(Form form) {
        constexpr int level = 6;
        constexpr int windowBits = 15;
        constexpr int memory = 8;
        const int bits = form == Form::zlib ? windowBits : -windowBits;
        if (deflateInit2(&stream_, level, Z_DEFLATED, bits, memory, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::runtime_error("zlib failed");
        }
    }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;
    ~Deflater() { deflateEnd(&stream_); }

    /// Hands what is compressed so far to `sink`. With `last` all of it, and nothing may follow.
    template <class Sink>
    void Write(std::string_view data, bool last, const Sink& sink) {
        // zlib does not change what it reads, and counts in 32 bits.
        constexpr std::size_t portion = std::size_t{1} << 20U;
        do {
            const std::string_view part = data.substr(0, portion);
            data.remove_prefix(part.size());
            stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(part.data()));
            stream_.avail_in = static_cast<uInt>(part.size());
            do {
                stream_.next_out = buffer_.data();
                stream_.avail_out = static_cast<uInt>(buffer_.size());
                deflate(&stream_, last && data.empty() ? Z_FINISH : Z_NO_FLUSH);
                sink(std::string_view(reinterpret_cast<const char*>(buffer_.data()),
                                      buffer_.size() - stream_.avail_out));
            } while (stream_.avail_out == 0);
        } while (!data.empty());
    }

private:
    z_stream stream_{};
    std::array<unsigned char, std::size_t{1} << 16U> buffer_;
};
