#include <functional>
#include <iostream>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Common/MessageCatalogue.h"
#include "Faults/Subjects.h"

namespace orvalo::faults {
namespace {

/// How often reading came to each code, 0 for success.
using Codes = std::map<int, int>;

/// Writes every beginning of the content, then the content with every other value of every byte, and reads each.
Codes DamageAll(std::string_view content, const std::function<int(const std::string&)>& read) {
    const std::string path = support::WriteFile("damaged", "");
    support::WriteFile("inc", includedPart);
    Codes codes;
    const auto attempt = [&](std::string_view bytes) {
        const int descriptor = ::open(path.c_str(), O_WRONLY | O_TRUNC);
        ASSERT_EQ(::write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        ::close(descriptor);
        ++codes[read(path)];
    };
    for (std::size_t size = 0; size < content.size(); ++size) attempt(content.substr(0, size));
    std::string bytes(content);
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (int change = 1; change < 256; ++change) {
            bytes[place] = static_cast<char>(content[place] ^ change);
            attempt(bytes);
        }
        bytes[place] = content[place];
    }
    int count = 0;
    for (const auto& [code, times] : codes) count += times;
    EXPECT_EQ(count, 256 * content.size());
    std::cout << "damaged files: " << count << '\n';
    return codes;
}

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

void ExpectAll(const Codes& codes, const std::vector<int>& expected) {
    for (const int code : expected) EXPECT_TRUE(codes.contains(code)) << code;
}

// Most of the catalogue is within one byte of these files.

TEST(DamagedFiles, ModelIsReadOrRefused) {
    EXPECT_GT(DamageAll(smallModel, [](const std::string& path) { return ReadModel(path, false); }).size(), 45U);
}

TEST(DamagedFiles, ModelIsReadOrRefusedForItsCubes) {
    EXPECT_GT(DamageAll(smallModel, [](const std::string& path) { return ReadModel(path, true); }).size(), 15U);
}

TEST(DamagedFiles, MatIsReadOrRefused) {
    ExpectAll(DamageAll(SmallMat(2), ReadResults), {0, 201, 202, 203, 204, 205, 206, 207, 208, 209, 211});
}

TEST(DamagedFiles, TextIsReadOrRefused) {
    ExpectAll(DamageAll(SmallText(2) + "32768\t1\t2\t0\tinf\tnan(1)\n", ReadResults), {0, 201, 307, 308});
}

}  // namespace
}  // namespace orvalo::faults
