#include <string>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Common/ReaderMessages.h>

namespace orvalo {
namespace {

TEST(Exception, KeepsTheFileNamePart) {
    const struct {
        const char* path;
        const char* file;
    } table[] = {{"Model\\Cubes.cpp", "Cubes.cpp"}, {"a\\b\\c", "c"}, {"a/b", "a/b"}, {"a\\", ""}, {"", ""}};
    for (const auto& [path, file] : table) EXPECT_EQ(Exception(path, 1, 100, "x").file(), file);
    EXPECT_EQ(Exception("a\\" + std::string(5000, 'n'), 1, 100, "x").file(), std::string(4096, 'n'));
}

TEST(Exception, IsLocatedAndDescribed) {
    Exception inner("Reader\\Reader", 200, ReaderMessages::TableIDReused.code, ReaderMessages::TableIDReused.format, 4);
    EXPECT_EQ(inner.what(), "Table ID = 4 reused.");
    EXPECT_EQ(inner.description(), "Table ID = 4 reused.\n\n[Exception thrown in source file 'Reader', line 200]");

    Exception located(inner, "model.txt", 12, 7);
    const Exception copy(located);
    located = inner;
    located = *&located;
    for (const Exception& e : {copy, located}) {
        EXPECT_EQ(e.code(), 161);
        EXPECT_EQ(e.file(), "Reader");
        EXPECT_EQ(e.line(), 200);
    }
    EXPECT_EQ(copy.what(), "Error in file \"model.txt\", line 12, column 7:\nTable ID = 4 reused.");
    EXPECT_EQ(located.what(), inner.what());
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
    EXPECT_EQ(Exception("f", 1, 100, "%s", std::string(1023 - 47, 'x').c_str()).description().size(), 1023U);
}

}  // namespace
}  // namespace orvalo
