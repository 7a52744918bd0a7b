#include <string_view>
#include <vector>

#include "ResultsFuzzing.h"

/// The input is what stands after a right header, which then need not be found again by every mutation. (The check of
/// the header itself is within reach of the text fuzzer and its dictionary.)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::string_view text = "MATLAB 5.0 MAT-file";
    constexpr std::string_view version("\0\1IM", 4);
    std::vector<std::uint8_t> file(text.begin(), text.end());
    file.resize(124);
    file.insert(file.end(), version.begin(), version.end());
    file.insert(file.end(), data, data + size);
    orvalo::fuzz::Run(file.data(), file.size());
    return 0;
}
