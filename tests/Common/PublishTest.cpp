#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/Reader.h>

#include "Common/Publish.h"
#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

/// Calls `read` while a thread watches what it publishes, which must never decrease, and returns what it ends with.
template <class T, class Read>
T Watched(const Read& read) {
    T progress = 0;
    std::atomic<bool> done = false;
    std::thread watcher([&] {
        for (T before = 0; !done;) {
            const T now = Published(progress);
            EXPECT_LE(before, now);
            before = now;
        }
    });
    EXPECT_NO_THROW(read(&progress));
    done = true;
    watcher.join();
    return progress;
}

// The thread sanitizer, under which tests of that name run, reports a store that is not atomic.
TEST(Publish, MayBeWatchedByAnotherThread) {
    constexpr int rows = 20000;
    std::string cubes = "CUBES count 20000 format 1 data\n";
    std::string text = "x\ty\tz\tf\tu\n";
    for (int i = 0; i < rows; ++i) {
        // Both plain rows and rows that end with a token.
        cubes += i % 2 == 0 ? "1 2 3 1 20.5\n" : "1 2 3 1 + 20.5\n";
        text += "1\t2\t3\t0\t20.5\n";
    }
    const std::string model = support::WriteFile("m", cubes + "END END");
    EXPECT_EQ(Watched<unsigned long long>([&](unsigned long long* progress) {
                  Model filled;
                  Reader reader(model, true);
                  reader.TraceCurrentCube(progress);
                  reader.Execute(&filled, true);
              }),
              rows);
    const std::string matrices =
        Values(8, std::vector<double>(rows)).Bytes() + Indices(4, std::vector<short>(rows / 2)).Bytes();
    for (const std::string& bytes : {text, MatHeader() + matrices}) {
        const std::string file = support::WriteFile("r", bytes);
        EXPECT_EQ(Watched<float>([&](float* progress) {
                      ResultsReader reader(file);
                      reader.TraceProgress(progress);
                      const std::unique_ptr<Results> results(reader.Execute());
                  }),
                  100.0F);
    }
}

}  // namespace
}  // namespace orvalo
