#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo {

/// What stands in a file at a place where something is wrong: the file is opened again for it. A file that cannot be
/// read twice, such as a pipe, has no text.
class SourceText {
public:
    /// Up to `before` bytes before the place and up to `after` bytes from it on; `at` becomes the offset of the place
    /// in what is returned. Valid until the next call.
    std::string_view Around(const InputPlace& place, std::size_t before, std::size_t after, std::size_t& at);

    /// Up to `size` bytes from the place on.
    std::string_view From(const InputPlace& place, std::size_t size = 512);

    /// The word, number or quoted name that begins at the place, as it is written: up to a blank, a comma, a line end
    /// or what ends a word of its kind.
    std::string_view TokenAt(const InputPlace& place);

    /// The line of the place without its line end, at most about 1,000 bytes on either side.
    std::string_view LineOf(const InputPlace& place, std::size_t& at);

private:
    bool Load(const std::string& path, std::uint64_t from, std::size_t size);

    std::string path_;
    std::uint64_t offset_ = 0;
    std::string bytes_;
};

}  // namespace orvalo
