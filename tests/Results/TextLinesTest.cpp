#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "Results/ResultsFiles.h"
#include "Results/TextLines.h"

namespace orvalo {
namespace {

using testing::ElementsAre;

/// The lines of a file, "$" for a newline at the end of one, read in steps of `readSize` after `alreadyRead` bytes.
std::vector<std::string> Lines(const std::string& content, std::size_t readSize, std::size_t alreadyRead = 0) {
    platform::InputFile file;
    EXPECT_TRUE(file.Open(support::WriteFile("results", content)));
    std::string before(std::min(alreadyRead, content.size()), ' ');
    EXPECT_EQ(file.Read(before.data(), before.size()), before.size());
    TextLines lines(file, before, readSize);
    std::vector<std::string> all;
    for (TextLine line; lines.Next(line);) {
        all.push_back(std::string(line.begin, line.end) + (line.newline ? "$" : ""));
        EXPECT_EQ(line.Length(), all.back().size());
        EXPECT_THAT(*line.end, testing::AnyOf('\n', '\r', '\0'));
    }
    EXPECT_FALSE(lines.Failed());
    return all;
}

/// What fgets gives with a buffer of 65,536 bytes, once carriage returns before line feeds are dropped.
std::vector<std::string> LinesByFgets(const std::string& content) {
    std::string translated;
    for (std::size_t i = 0; i < content.size(); ++i) {
        if (content.compare(i, 2, "\r\n") != 0) translated += content[i];
    }
    std::vector<std::string> all;
    const std::string path = support::WriteFile("translated", translated);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    std::vector<char> buffer(65536);
    while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), file.get()) != nullptr) {
        all.emplace_back(buffer.data());
        if (all.back().ends_with('\n')) all.back().back() = '$';
    }
    return all;
}

TEST(TextLines, HandOutWhatFgetsGives) {
    using namespace std::string_literals;
    auto contents =
        support::Split("|\n|\r\n|\r|a|a\r|a\n|a\r\n|a\r\r\nb|\r\n\r\n|a\nb\r\nc\rd\n|a\0b\nc\0\0\nd\n|\0\n\0|\0"s, "|");
    // Lines around the longest, with each kind of end.
    for (const std::size_t size : {65533U, 65534U, 65535U, 65536U, 65537U, 131069U, 131070U, 131071U, 200000U}) {
        for (const char* const end : {"", "\n", "\r\n", "\r", "\r\r\n", "\nx\n"}) {
            contents.push_back(std::string(size, 'a') + end);
            contents.push_back("b\n" + std::string(size, 'a') + end + "c");
        }
    }
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        std::string& content = contents.emplace_back();
        for (int j = 0; j < 40; ++j) content += "ab\r\n\r\n\0"[random() % 7];
    }
    for (const std::string& content : contents) {
        const auto expected = LinesByFgets(content);
        for (const std::size_t readSize : {1U, 2U, 3U, 7U, 64U, 65536U, 262144U}) {
            if (content.size() > 1000 && readSize < 64) continue;
            ASSERT_EQ(Lines(content, readSize), expected)
                << content.substr(0, 50) << ' ' << content.size() << ' ' << readSize;
            ASSERT_EQ(Lines(content, readSize, 5), expected) << content.substr(0, 50);
        }
    }
}

}  // namespace
}  // namespace orvalo
