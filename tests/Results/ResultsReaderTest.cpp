#include <tuple>

#include <gtest/gtest.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

using support::WriteFile;

const std::string mat = MatHeader();
const std::string values = Values(2, {1, 2, 3, 4}).Bytes();
const std::string indices = Indices(3, {7, 8, 0, 0, -1, -1}).Bytes();

TEST(ResultsReader, PublishesProgressAndKnowsWhatIsDefined) {
    const std::tuple<std::string, float, bool> table[] = {
        // Values are four fifths of a MAT-file.
        {mat, 0, false},
        {mat + values, 80, false},
        {mat + indices, 20, false},
        {mat + values + indices, 100, true},
        {mat + indices + values, 100, true},
        {mat + Values(7, std::vector<double>(7)).Bytes() + Indices(3, {1, 1, 1}).Bytes(), 100, true},
        {mat + Values(2, {}).Bytes() + Indices(3, {}).Bytes(), 100, true},
        {mat + values.substr(0, 20), 0, false},
        // Of a text every line counts one byte more than it has.
        {"", 0, false},
        {"u\n", 100, false},
        {"uuuuuuu\n1\n", 100, true},
        {"uuuuuuu\n1\t2\n", 9.0F / 12.0F * 100.0F, false},
        {"u\r\n1\r\n2\r\n3\t4\r\n", 9.0F / 14.0F * 100.0F, false},
        {"x\ty\tz\tf\tu\n", 100, false},
        {"x\ty\tz\tf\tu\n1\t1\t1\t1\t1\n", 100, true},
    };
    for (const auto& [bytes, last, defined] : table) {
        float progress = -1;
        ResultsReader reader(WriteFile("results", bytes));
        reader.TraceProgress(&progress);
        bool found = false;
        try {
            const std::unique_ptr<Results> results(reader.Execute());
            found = results->ValuesDefined();
            EXPECT_EQ(results->IndicesDefined(), found);
        } catch (const Exception&) {
        }
        EXPECT_EQ(found, defined) << bytes;
        EXPECT_FLOAT_EQ(progress, last) << bytes;
        EXPECT_LE(progress, 100) << bytes;
    }
}

TEST(ResultsReader, MayReadTwice) {
    const std::string path = WriteFile("results", mat + values + indices);
    ResultsReader reader(path);
    const std::unique_ptr<Results> first(reader.Execute());
    const std::unique_ptr<Results> second(reader.Execute());
    EXPECT_NE(first, second);
    EXPECT_EQ(Describe(*second), Describe(*first));
    EXPECT_EQ(first->FileName(), path);
}

TEST(ResultsReader, OpensNoPathThatCannotBe) {
    const std::string path = "/nonexistent/" + std::string(9000, 'd');
    EXPECT_EQ(Outcome(path), "200 ResultsReader: Unable to open '" + std::string(512, 'd') + "' results file.");
    // What stands before a NUL is not the file that is meant.
    EXPECT_THROW(Load(WriteFile("results", "u\n") + std::string("\0x", 2)), Exception);
}

}  // namespace
}  // namespace orvalo
