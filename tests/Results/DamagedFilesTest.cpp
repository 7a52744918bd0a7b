#include <map>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

/// Reads what a damaged file still gives and asks for all of it and a little more; or takes the error, which must be
/// one of those that the catalogue has for results files.
void Try(const std::string& path, std::map<int, int>& outcomes) {
    try {
        const auto results = Load(path);
        for (unsigned int row = 0; row <= results->RowCount(); ++row) {
            for (unsigned int col = 0; col <= results->ValuesColCount(); ++col) results->SafeValueGet(col, row, 0);
        }
        for (int cell = -2; cell < 12; ++cell) results->SafeValueGet(0, cell, cell % 3, cell % 4, 0);
        ++outcomes[0];
    } catch (const Exception& error) {
        EXPECT_TRUE(error.code() == 102 || (error.code() >= 200 && error.code() <= 211) || error.code() >= 306)
            << error.what();
        EXPECT_FALSE(error.what().empty());
        ++outcomes[error.code()];
    }
}

/// Tries every beginning of the content and every other value of every byte.
std::map<int, int> TryAllDamages(const std::string& content) {
    std::map<int, int> outcomes;
    const int file = ::memfd_create("damaged", 0);
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    const auto tryBytes = [&](const std::string& bytes) {
        EXPECT_EQ(::ftruncate(file, 0), 0);
        EXPECT_EQ(::pwrite(file, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
        Try(path, outcomes);
    };
    for (std::size_t size = 0; size < content.size(); ++size) tryBytes(content.substr(0, size));
    std::string changed = content;
    for (std::size_t place = 0; place < content.size(); ++place) {
        for (int change = 1; change < 256; ++change) {
            changed[place] = static_cast<char>(content[place] ^ change);
            tryBytes(changed);
        }
        changed[place] = content[place];
    }
    ::close(file);
    int count = 0;
    for (const auto& [code, times] : outcomes) count += times;
    EXPECT_EQ(count, 256 * content.size());
    testing::Test::RecordProperty("files", count);
    return outcomes;
}

TEST(DamagedFiles, MatAreReadOrRefused) {
    MatMatrix values = Values(2, {1, 2, 3, 4});
    values.name = "velocity";
    const std::string content = MatHeader() + values.Bytes() + Indices(3, {7, 8, 0, 0, -1, -1}).Bytes();
    const auto outcomes = TryAllDamages(content);
    for (const int code : {0, 201, 202, 203, 204, 205, 206, 207, 208, 209, 211})
        EXPECT_TRUE(outcomes.contains(code)) << code;
}

TEST(DamagedFiles, TextIsReadOrRefused) {
    const auto outcomes = TryAllDamages("x\ty\tz\tf\tux\tuy\n3\t4\t5\t0\t1.5\t-2e-3\r\n32768\t1\t2\t0\tinf\tnan(1)\n");
    for (const int code : {0, 201, 307, 308}) EXPECT_TRUE(outcomes.contains(code)) << code;
}

}  // namespace
}  // namespace orvalo
