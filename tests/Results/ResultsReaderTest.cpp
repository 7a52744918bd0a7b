#include <gtest/gtest.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

const std::string mat = MatHeader();
const std::string values = Values(2, {1, 2, 3, 4}).Bytes();
const std::string indices = Indices(3, {7, 8, 0, 0, -1, -1}).Bytes();

TEST(ResultsReader, PublishesProgress) {
    const struct {
        std::string bytes;
        float last;
    } table[] = {
        // Values are four fifths of a MAT-file.
        {mat, 0},
        {mat + values, 80},
        {mat + indices, 20},
        {mat + values + indices, 100},
        {mat + indices + values, 100},
        {mat + Values(7, std::vector<double>(7)).Bytes() + Indices(3, {1, 1, 1}).Bytes(), 100},
        {mat + values.substr(0, 20), 0},
        // Of a text every line counts one byte more than it has.
        {"", 0},
        {"uuuuuuu\n1\n", 100},
        {"uuuuuuu\n1\t2\n", 9.0F / 12.0F * 100.0F},
        {"u\r\n1\r\n2\r\n3\t4\r\n", 9.0F / 14.0F * 100.0F},
    };
    for (const auto& [bytes, last] : table) {
        const TemporaryFile file(bytes);
        float progress = -1;
        ResultsReader reader(file.Path());
        reader.TraceProgress(&progress);
        try {
            delete reader.Execute();
        } catch (const Exception&) {
        }
        EXPECT_FLOAT_EQ(progress, last) << bytes;
        EXPECT_LE(progress, 100) << bytes;
    }
}

TEST(ResultsReader, KnowsWhatIsDefined) {
    const std::pair<std::string, bool> table[] = {
        {"", false},
        {"u\n", false},
        {"u\n1\n", true},
        {"x\ty\tz\tf\tu\n", false},
        {"x\ty\tz\tf\tu\n1\t1\t1\t1\t1\n", true},
        {mat, false},
        {mat + Values(2, {}).Bytes() + Indices(3, {}).Bytes(), true},
    };
    for (const auto& [bytes, defined] : table) {
        const auto results = LoadBytes(bytes);
        EXPECT_EQ(results->ValuesDefined(), defined) << bytes;
        EXPECT_EQ(results->IndicesDefined(), defined) << bytes;
    }
}

TEST(ResultsReader, MayReadTwice) {
    const TemporaryFile file(mat + values + indices);
    ResultsReader reader(file.Path());
    const std::unique_ptr<Results> first(reader.Execute());
    const std::unique_ptr<Results> second(reader.Execute());
    EXPECT_NE(first, second);
    EXPECT_EQ(Describe(*second), Describe(*first));
    EXPECT_EQ(first->FileName(), file.Path());
}

TEST(ResultsReader, OpensNoPathThatCannotBe) {
    const std::string path = "/nonexistent/" + std::string(9000, 'd');
    EXPECT_EQ(Outcome(path), "200 ResultsReader: Unable to open '" + std::string(512, 'd') + "' results file.");
    // What stands before a NUL is not the file that is meant.
    const TemporaryFile file("u\n");
    EXPECT_THROW(Load(file.Path() + std::string("\0x", 2)), Exception);
}

}  // namespace
}  // namespace orvalo
