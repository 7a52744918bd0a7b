#include "ResultsFuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvalo::fuzz::Run(data, size);
    return 0;
}
