#include <functional>
#include <iostream>

#include <gtest/gtest.h>

#include "Common/Platform.h"
#include "Faults/Faults.h"
#include "Faults/Subjects.h"

namespace orvalo::faults {
namespace {

struct Subject {
    const char* name;
    std::string content;
    int openingFailed;
    int readingFailed;
    std::function<std::string(const std::string&)> read;
};

/// What came of reading, "code text" for an error.
std::string ReadsModel(const std::string& path, bool cubesOnly) {
    const support::Outcome outcome = support::ReadPath(path, {cubesOnly, true, 64});
    return (outcome.code != 0 ? std::to_string(outcome.code) + ' ' : "") + support::Fingerprint(outcome);
}

const std::vector<Subject>& Subjects() {
    static const std::vector<Subject> subjects = {
        {"model", std::string(smallModel), 103, 104, [](const std::string& path) { return ReadsModel(path, false); }},
        {"cubes", std::string(smallModel), 103, 104, [](const std::string& path) { return ReadsModel(path, true); }},
        {"text", SmallText(3), 200, 201, [](const std::string& path) { return orvalo::Outcome(path); }},
        {"MAT-file", SmallMat(3), 200, 201, [](const std::string& path) { return orvalo::Outcome(path); }},
    };
    return subjects;
}

std::string Write(const Subject& subject, std::size_t end = std::string::npos) {
    support::WriteFile("inc", includedPart.substr(0, end));
    return support::WriteFile("subject", std::string_view(subject.content).substr(0, end));
}

bool HasCode(const std::string& outcome, int code) {
    return outcome.rfind(std::to_string(code) + ' ', 0) == 0;
}

TEST(FailingReads, EndInTheirMessage) {
    long points = 0;
    for (const Subject& subject : Subjects()) {
        const std::string path = Write(subject);
        const std::string usual = subject.read(path);
        const auto failEach = [&](Series*& kind, const auto& isRight) {
            for (long k = 1;; ++k, ++points) {
                Series series{k};
                kind = &series;
                const std::string outcome = subject.read(path);
                kind = nullptr;
                EXPECT_EQ(held.files, 0);
                if (!series.Reached()) {
                    EXPECT_GT(k, 1) << subject.name;
                    return;
                }
                EXPECT_TRUE(isRight(outcome)) << subject.name << ", k = " << k << ": " << outcome;
            }
        };
        failEach(opening, [&](const std::string& outcome) { return HasCode(outcome, subject.openingFailed); });
        failEach(reading, [&](const std::string& outcome) { return HasCode(outcome, subject.readingFailed); });
        // Without a size a model and a text are read all the same. What is not known to be there cannot be opened, and
        // what a MAT-file claims is not believed.
        failEach(asking, [&](const std::string& outcome) {
            return outcome == usual || HasCode(outcome, subject.openingFailed) ||
                   (HasCode(outcome, subject.readingFailed) && std::string(subject.name) == "MAT-file");
        });
    }
    std::cout << "calls that failed: " << points << '\n';
}

TEST(FailingReads, ShortAndInterruptedReadsDoNotMatter) {
    for (const Subject& subject : Subjects()) {
        const std::string path = Write(subject);
        const std::string usual = subject.read(path);
        for (unsigned int seed = 0; seed < 20; ++seed) {
            transfer.most = seed == 0 ? 1 : 7 * seed;
            transfer.seed = seed;
            transfer.interrupted = seed % 2 != 0;
            EXPECT_EQ(subject.read(path), usual) << subject.name << ", seed " << seed;
        }
        transfer = {};
    }
}

TEST(FailingReads, AFileThatShrinksIsAShortFile) {
    for (const Subject& subject : Subjects()) {
        for (std::size_t end = 0; end < subject.content.size(); ++end) {
            transfer.end = end;
            const std::string shrunk = subject.read(Write(subject));
            transfer = {};
            ASSERT_EQ(shrunk, subject.read(Write(subject, end))) << subject.name << ", end " << end;
        }
    }
}

#if !defined(_WIN32)
TEST(FailingReads, HaveTheReasonOfTheSystem) {
    // The first page of every process.
    EXPECT_EQ(platform::WhyUnreadable("/proc/self/mem"), "Input/output error");
    EXPECT_EQ(platform::WhyUnreadable("/proc/self/maps"), "");
}
#endif

}  // namespace
}  // namespace orvalo::faults
