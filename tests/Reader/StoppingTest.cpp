#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <Orvalo3DReader/Orvalo3DReader.h>

#include "Common/Publish.h"
#include "Results/CellLookup.h"
#include "Support/ModelFiles.h"

namespace orvalo {
namespace {

using namespace support;
using namespace std::chrono_literals;

/// Whether `read` ends with Stopped, and nothing else.
bool IsStopped(const std::function<void()>& read) {
    try {
        read();
    } catch (const Stopped& stopped) {
        EXPECT_EQ(stopped.what(), "Reading was stopped.");
        return stopped.code() == 0;
    } catch (const Exception& failure) {
        ADD_FAILURE() << failure.what();
    }
    return false;
}

#if !defined(_WIN32)

/// A pipe under a name, open for writing.
class Pipe {
public:
    Pipe() {
        std::signal(SIGPIPE, SIG_IGN);
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        ::close(descriptor_);
        ::unlink(path.c_str());
    }

    /// Waits for a reader.
    void Open() { descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC); }

    /// Writes rows of that many bytes; false once nobody reads them any more.
    bool WriteRows(const std::string& row, std::size_t size) const {
        std::string text;
        while (text.size() < size) text += row;
        return ::write(descriptor_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }

    const std::string path = ScratchDirectory() + "/pipe";

private:
    int descriptor_ = -1;
};

// Whoever watches the progress raises the flag while the reader waits for more: what follows is not read to its end.
TEST(StoppingFromAThread, EndsModelsAndResultsWhereTheyAreReadOn) {
    constexpr std::size_t enough = std::size_t{1} << 20U;  // For some buffers.
    for (const bool isModel : {true, false}) {
        Pipe pipe;
        std::atomic<bool> stop{false};
        unsigned long long cubes = 0;
        std::thread writer([&] {
            pipe.Open();
            pipe.WriteRows(isModel ? "CUBES count 9e7 format 0 data\n" : "x\ty\tz\tf\tu\n", 1);
            const std::string row = isModel ? "1 2 3 4\n" : "1\t2\t3\t0\t0.5\n";
            pipe.WriteRows(row, enough);
            while (isModel && Published(cubes) < 10'000) std::this_thread::yield();
            stop = true;
            for (int i = 0; i < 100 && pipe.WriteRows(row, enough); ++i) {
            }
        });
        EXPECT_TRUE(IsStopped([&] {
            ReadOptions options;
            options.cubesOnly = true;
            options.cubesRead = &cubes;
            options.stop = &stop;
            if (isModel) ReadModel(pipe.path, options);
            if (!isModel) ReadResults(pipe.path, options);
        }));
        writer.join();
        EXPECT_LT(cubes, 90 * enough / 8);
    }
}

#endif

/// How long `read` goes on after the flag is raised while it works.
std::chrono::duration<double> Delay(const std::function<void(const std::atomic<bool>*)>& read) {
    std::atomic<bool> stop{false};
    std::chrono::steady_clock::time_point raised;
    std::thread raiser([&] {
        std::this_thread::sleep_for(50ms);
        raised = std::chrono::steady_clock::now();
        stop = true;
    });
    EXPECT_TRUE(IsStopped([&] { read(&stop); }));
    const auto ended = std::chrono::steady_clock::now();
    raiser.join();
    return ended - raised;
}

// Without looks at the flag each of these would go on for seconds.

TEST(Stopping, EndsTheMakingOfTables) {
    const std::string path = WriteFile("long.model", Replaced(Sections("AMCXS"), "timestep 0.1", "timestep 0.2e-9"));
    EXPECT_LT(Delay([&](const std::atomic<bool>* stop) {
                  ReadOptions options;
                  options.doublePrecision = false;
                  options.stop = stop;
                  ReadModel(path, options);
              }),
              1s);
}

TEST(Stopping, EndsTheBuildingOfALookup) {
    // Four billion rows for the same cube.
    const short zero = 0;
    const CoordinateRun run[] = {{&zero, &zero, &zero, 0, 4'000'000'000}};
    EXPECT_LT(Delay([&](const std::atomic<bool>* stop) { CellLookup().Build(run, StopFlag(stop)); }), 1s);
}

TEST(Stopping, CopiesOfAReaderStopToo) {
    const std::atomic<bool> stop{true};
    const std::string model = WriteFile("stopped.model", Sections("AMCXS"));
    Reader reader(model, false);
    reader.StopOn(&stop);
    reader.Threads(2);
    Reader copy(reader);
    Model read;
    EXPECT_TRUE(IsStopped([&] { copy.Execute(&read, true); }));
    reader.StopOn(nullptr);
    reader.Execute(&read, true);
    EXPECT_EQ(read.actuators.size(), 1U);

    float percent = 0;
    const std::string text = WriteFile("stopped.txt", "u\n1\n");
    ResultsReader results(text);
    results.TraceProgress(&percent);
    results.Threads(0);
    results.StopOn(&stop);
    ResultsReader other(model);
    other = results;
    EXPECT_TRUE(IsStopped([&] { other.Execute(); }));
    other.StopOn(nullptr);
    EXPECT_EQ(std::unique_ptr<Results>(other.Execute())->FileName(), text);
    EXPECT_EQ(percent, 100.0F);
}

}  // namespace
}  // namespace orvalo
