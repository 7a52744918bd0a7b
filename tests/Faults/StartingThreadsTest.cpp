#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadResults.h>

#include "Faults/Faults.h"
#include "Faults/ThreadSubjects.h"

// Stands before the C library's own for the whole process, so that the standard library comes here.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                              void* argument) {
    if (orvalo::faults::starting != nullptr && orvalo::faults::starting->Fails()) return EAGAIN;
    static const auto real = reinterpret_cast<decltype(&pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return real(thread, attributes, routine, argument);
}

namespace orvalo::faults {
namespace {

/// How many threads are started while `read` goes on, of which from the one numbered `failing` on none can be.
template <class Read>
long Started(const Read& read, long failing = LONG_MAX) {
    Series series{failing, true};
    starting = &series;
    read();
    starting = nullptr;
    return std::min<long>(series.calls, failing - 1);
}

TEST(StartingThreads, NeedNotSucceed) {
    for (const ThreadSubject& subject : ThreadSubjects()) {
        const std::string path = support::WriteFile("shared", subject.content);
        const std::string usual = subject.read(path, 1, nullptr);
        for (const long failing : {1, 2, 3}) {
            const long started =
                Started([&] { EXPECT_EQ(subject.read(path, 3, nullptr), usual) << subject.name; }, failing);
            EXPECT_EQ(started, failing - 1) << subject.name;
        }
    }
}

TEST(StartingThreads, IsForFilesOfMoreThanAMiB) {
    const auto repeated = [](std::string text, const std::string& row, std::size_t size) {
        while (text.size() < size) text += row;
        return text;
    };
    const auto tables = [](const char* step) {
        return support::Replaced(support::Sections("AMCXS"), "timestep 0.1", std::string("timestep ") + step);
    };
    constexpr std::size_t small = 1'000'000;
    constexpr std::size_t large = 3'000'000;
    const std::string cubes = "CUBES count 300000 format 0 data\n";
    const struct {
        const char* name;
        bool isModel;
        std::string few;
        std::string many;
    } table[] = {
        {"cubes", true, repeated(cubes, "1 2 3 4\n", small), repeated(cubes, "1 22 3 4\n", large)},
        {"generated", true, tables("1e-6"), tables("1e-7")},
        {"text", false, repeated("x\ty\tz\tf\tu\n", "1\t2\t3\t0\t1.5\n", small), repeated("u\n", "1.5\n", large)},
        {"MAT-file", false, SmallMat(30'000), SmallMat(300'000)},
    };
    for (const auto& row : table) {
        for (const bool isSmall : {true, false}) {
            const std::string path = support::WriteFile("sized", isSmall ? row.few : row.many);
            ReadOptions options;
            const auto read = [&] {
                try {
                    if (row.isModel) ReadModel(path, options);
                    if (!row.isModel) ReadResults(path, options);
                } catch (const Exception&) {
                    // Rows may end with the file.
                }
            };
            EXPECT_EQ(Started(read), 0) << row.name;
            options.cubesOnly = std::string_view(row.name) == "cubes";
            options.threads = 4;
            EXPECT_EQ(Started(read) > 0, !isSmall) << row.name;
        }
    }
}

}  // namespace
}  // namespace orvalo::faults
