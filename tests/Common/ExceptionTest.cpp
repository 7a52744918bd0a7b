#include <string>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/Exception.h>

namespace orvalo {
namespace {

TEST(Exception, IsLocatedAndDescribed) {
    Exception inner("Reader\\Core\\Reader", 200, 161, "Table ID = %d reused.", 4);
    EXPECT_EQ(inner.description(), "Table ID = 4 reused.\n\n[Exception thrown in source file 'Reader', line 200]");
    const Exception located(inner, "model.txt", 12, 7);
    EXPECT_EQ(located.what(), "Error in file \"model.txt\", line 12, column 7:\nTable ID = 4 reused.");
    EXPECT_EQ(located.code(), 161);
    EXPECT_EQ(located.file(), "Reader");
    EXPECT_EQ(located.line(), 200);
    EXPECT_EQ(Exception("a/b", 1, 100, "x").file(), "a/b");
    EXPECT_EQ(Exception("a\\" + std::string(5000, 'n'), 1, 100, "x").file(), std::string(4096, 'n'));
}

// A text that does not fit ends the process: it is never shortened.
TEST(ExceptionDeathTest, OverflowIsAFault) {
    const auto raised = [](std::size_t size) { return Exception("f", 1, 100, "%s", std::string(size, 'x').c_str()); };
    EXPECT_EQ(raised(4095).what().size(), 4095U);
    EXPECT_DEATH(raised(4096), "");
    // Around the message stand 37 characters of the place, or 47 of the description.
    Exception fits = raised(1023 - 37);
    EXPECT_EQ(Exception(fits, "m", 1, 1).what().size(), 1023U);
    Exception over = raised(1023 - 36);
    EXPECT_DEATH(Exception(over, "m", 1, 1), "");
    EXPECT_DEATH(over.description(), "");
}

}  // namespace
}  // namespace orvalo
