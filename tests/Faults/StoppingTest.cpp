#include <functional>
#include <iostream>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/Stopped.h>

#include "Faults/Faults.h"
#include "Faults/Subjects.h"

namespace orvalo::faults {
namespace {

void ReadModel(const std::string& path, bool cubesOnly) {
    Model model;
    ModelReader reader(path, cubesOnly, 60);
    reader.StopOn(&raised);
    reader.Execute(model, true);
}

void ReadResults(const std::string& path) {
    ResultsReader reader(path);
    reader.StopOn(&raised);
    const std::unique_ptr<Results> results(reader.Execute());
}

std::string LargeMat() {
    constexpr unsigned int rows = 200'000;
    std::vector<short> indices(std::size_t{3} * rows);
    for (std::size_t i = 0; i < rows; ++i) indices[i] = static_cast<short>(i % 1000);
    return MatHeader() + Values(2, std::vector<double>(2 * std::size_t{rows}, 0.5)).Bytes() +
           Indices(3, indices).Bytes();
}

// The flag is raised before the read and during each call that reads from a file; what follows the last one is stopped
// too. After the rise no call comes but the one that sees the end of a file which the call before it met.
TEST(Stopping, IsPossibleWhereverAFileIsReadAndLosesNothing) {
    support::WriteFile("inc", includedPart);
    const struct {
        const char* name;
        std::string content;
        std::function<void(const std::string&)> read;
        long leastCalls;
    } subjects[] = {
        {"model", std::string(smallModel), [](const std::string& path) { ReadModel(path, false); }, 15},
        {"cubes", std::string(smallModel), [](const std::string& path) { ReadModel(path, true); }, 15},
        {"text", SmallText(30'000), ReadResults, 4},
        // Pieces of a MiB of each column and of the indices.
        {"MAT-file", LargeMat(), ReadResults, 6},
    };
    for (const auto& subject : subjects) {
        const std::string path = support::WriteFile("stopped", subject.content);
        for (long k = 0;; ++k) {
            Series series{k};
            raised = k == 0;
            raising = &series;
            const Held before = held;
            bool stopped = false;
            try {
                subject.read(path);
            } catch (const Stopped&) {
                stopped = true;
            }
            raising = nullptr;
            EXPECT_EQ(held, before) << subject.name << ", k = " << k;
            if (series.calls < k) {
                EXPECT_TRUE(!stopped && k > subject.leastCalls) << subject.name << ", k = " << k;
                break;
            }
            EXPECT_TRUE(stopped && series.calls <= k + 1) << subject.name << ", k = " << k;
        }
    }
    raised = false;
}

}  // namespace
}  // namespace orvalo::faults
