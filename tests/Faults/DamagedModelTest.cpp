#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Faults/Subjects.h"

namespace orvalo::faults {
namespace {

// Instrumented builds take one of so many changes, another one at each byte.
#if defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__)
constexpr unsigned int stride = 1;
#else
constexpr unsigned int stride = 16;
#endif

/// Reads the small model with one part of it damaged, and counts what came of it.
class Damaged {
public:
    explicit Damaged(bool cubesOnly) : cubesOnly_(cubesOnly), path_(support::WriteFile("damaged", "")) {
        support::WriteFile("inc", includedPart);
    }

    void Try(std::string_view bytes) {
        const int descriptor = ::open(path_.c_str(), O_WRONLY | O_TRUNC);
        ASSERT_EQ(::write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        ::close(descriptor);
        const support::Outcome outcome = support::ReadPath(path_, {cubesOnly_, true, Lexer::defaultBufferSize});
        ++codes_[outcome.code];
        if (outcome.code == 0) return;
        EXPECT_TRUE(outcome.code >= 102 && outcome.code <= 183) << outcome.what;
        EXPECT_TRUE(outcome.place.path.empty() || outcome.place.offset <= bytes.size()) << outcome.what;
    }

    const std::map<int, int>& Codes() const { return codes_; }

private:
    bool cubesOnly_;
    std::string path_;
    std::map<int, int> codes_;
};

/// Tries every beginning of the model and every other value of every byte.
std::map<int, int> DamageAll(bool cubesOnly) {
    Damaged damaged(cubesOnly);
    for (std::size_t size = 0; size <= smallModel.size(); ++size) damaged.Try(smallModel.substr(0, size));
    std::string bytes(smallModel);
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (unsigned int change = 1 + place % stride; change < 256; change += stride) {
            bytes[place] = static_cast<char>(static_cast<unsigned char>(smallModel[place]) ^ change);
            damaged.Try(bytes);
        }
        bytes[place] = smallModel[place];
    }
    return damaged.Codes();
}

TEST(DamagedModel, IsReadOrRefused) {
    // Most of the catalogue of model files is within one byte of this model.
    EXPECT_GT(DamageAll(false).size(), 45U);
}

TEST(DamagedModel, IsReadOrRefusedForItsCubes) {
    EXPECT_GT(DamageAll(true).size(), 15U);
}

}  // namespace
}  // namespace orvalo::faults
