#include <functional>
#include <iostream>
#include <tuple>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Common/MessageCatalogue.h"
#include "Faults/Subjects.h"
#include "Support/Emulated.h"

namespace orvalo::faults {
namespace {

int ReadModel(const std::string& path, bool cubesOnly) {
    // A small buffer, as a sanitizer has each one to watch over.
    const support::Outcome outcome = support::ReadPath(path, {cubesOnly, true, 2048});
    if (outcome.code == 0) return 0;
    EXPECT_TRUE(MayEndModel(outcome.code)) << outcome.what;
    EXPECT_TRUE(!outcome.place.Known() || outcome.place.offset <= smallModel.size()) << outcome.what;
    return outcome.code;
}

/// Asks results for all that they hold and a little more.
int ReadResults(const std::string& path) {
    try {
        const auto results = Load(path);
        for (unsigned int row = 0; row <= results->RowCount(); ++row) {
            for (unsigned int col = 0; col <= results->ValuesColCount(); ++col) results->SafeValueGet(col, row, 0);
        }
        for (int cell = -2; cell < 12; ++cell) results->SafeValueGet(0, cell, cell % 3, cell % 4, 0);
        return 0;
    } catch (const Exception& error) {
        EXPECT_TRUE(MayEndResults(error.code())) << error.what();
        return error.code();
    }
}

/// A content, how it is read, and how many codes of the catalogue, and 0 for success, damage is to bring about.
using Damaged = std::tuple<std::string, std::function<int(const std::string&)>, std::size_t>;

// Most of the catalogue is within one byte of these files.
const Damaged files[] = {
    {std::string(smallModel), [](const std::string& path) { return ReadModel(path, false); }, 46},
    {std::string(smallModel), [](const std::string& path) { return ReadModel(path, true); }, 16},
    {SmallMat(2), ReadResults, 11},
    {SmallText(2) + "32768\t1\t2\t0\tinf\tnan(1)\n", ReadResults, 4},
};

class DamagedFiles : public testing::TestWithParam<int> {};

// Under an emulator, where all of them take long, one in 15 of the 255 other values of each byte.
constexpr int step = support::emulated ? 15 : 1;

/// Reads every beginning of the content, then the content with other values of every byte.
TEST_P(DamagedFiles, AreReadOrRefused) {
    const auto& [content, read, leastCodes] = files[GetParam()];
    const std::string path = support::WriteFile("damaged", "");
    support::WriteFile("inc", includedPart);
    std::map<int, std::size_t> codes;
    const auto attempt = [&, &reads = read](std::string_view bytes) {
        const int descriptor = ::open(path.c_str(), O_WRONLY | O_TRUNC);
        ASSERT_EQ(::write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        ::close(descriptor);
        ++codes[reads(path)];
    };
    std::string bytes = content;
    for (std::size_t size = 0; size < content.size(); ++size) attempt(std::string_view(bytes).substr(0, size));
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (int change = 1 + static_cast<int>(place) % step; change < 256; change += step) {
            bytes[place] = static_cast<char>(content[place] ^ change);
            attempt(bytes);
        }
        bytes[place] = content[place];
    }
    std::size_t count = 0;
    for (const auto& [code, times] : codes) count += times;
    EXPECT_EQ(count, (1 + 255 / step) * content.size());
    EXPECT_GE(codes.size(), leastCodes);
    std::cout << "damaged files: " << count << '\n';
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, DamagedFiles, testing::Range(0, 4));

}  // namespace
}  // namespace orvalo::faults
