#include <functional>
#include <iostream>
#include <stdexcept>
#include <tuple>

#include <gtest/gtest.h>

#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Reader/Reader.h>

#include "Faults/Faults.h"
#include "Faults/Subjects.h"
#include "Faults/ThreadSubjects.h"

namespace orvalo::faults {
namespace {

/// Makes memory fail for as long as the result lives.
std::unique_ptr<Series*, void (*)(Series**)> Arm(Series& series) {
    memory = &series;
    return {&memory, [](Series** armed) { *armed = nullptr; }};
}

/// Reads with failing memory and returns 0 or the code of the error.
using Attempt = std::function<int(Series&)>;

/// What Execute throws is a ReadError.
void ExecuteIn(Reader& reader, Model& model, bool doublePrecision) {
    try {
        reader.Execute(&model, doublePrecision);
    } catch (const ReadError&) {
        throw;
    } catch (const Exception&) {
        throw std::logic_error("no ReadError");
    }
}

Attempt ReadsModel(const std::string& path, bool cubesOnly, bool doublePrecision) {
    return [=](Series& series) {
        support::Outcome outcome;
        try {
            const auto armed = Arm(series);
            Reader reader(path, cubesOnly);
            const Reader copy(reader);
            Reader other("", cubesOnly);
            other = reader;
            ExecuteIn(reader, *outcome.model, doublePrecision);
        } catch (const Exception& failure) {
            return failure.code();
        }
        EXPECT_EQ(support::Fingerprint(outcome),
                  support::Fingerprint(support::ReadPath(path, {cubesOnly, doublePrecision})));
        return 0;
    };
}

Attempt ReadsResults(const std::string& path) {
    return [=](Series& series) {
        std::unique_ptr<Results> results;
        try {
            const auto armed = Arm(series);
            ResultsReader reader(path);
            results.reset(reader.Execute());
        } catch (const Exception& failure) {
            return failure.code();
        }
        EXPECT_EQ(Describe(*results), orvalo::Outcome(path));
        return 0;
    };
}

/// All in one call, with `options`.
Attempt ReadsInOneCall(const std::string& path, bool isModel, const ReadOptions& options = {}) {
    return [=](Series& series) {
        try {
            const auto armed = Arm(series);
            if (!isModel) return ReadResults(path, options) != nullptr ? 0 : -1;
            return ReadModel(path, options).cubes.CubesCount() > 0 ? 0 : -1;
        } catch (const ReadError& failure) {
            EXPECT_TRUE(failure.Row() == 0 || !(failure.Place() == InputPlace()));
            return failure.code();
        } catch (const Exception& failure) {
            return isModel && failure.code() != 0 ? -1 : failure.code();
        }
    };
}

/// Lets each allocation of an attempt that should end in `expected` fail. Returns how many there are.
long FailEach(const std::string& name, int expected, const Attempt& attempt, bool forever) {
    for (long k = 1;; ++k) {
        Series series{k, forever};
        const Held before = held;
        int code = -1;
        try {
            code = attempt(series);
        } catch (...) {
            ADD_FAILURE() << "the library throws nothing but its own exceptions";
        }
        EXPECT_EQ(held, before) << name << ": what was held is released, k = " << k;
        if (!series.Reached()) {
            EXPECT_EQ(code, expected) << name;
            return k - 1;
        }
        // An allocation that an error's place or the exception itself is made of may fail without being missed.
        const bool mayBeUsual = expected != 0 || !forever;
        EXPECT_TRUE(code == 102 || (mayBeUsual && code == expected)) << name << ": " << code << ", k = " << k;
    }
}

TEST(FailingMemory, EndsInOutOfMemoryAndLosesNothing) {
    const std::string longName(100, 'n');
    support::WriteFile("inc", includedPart);
    const std::string model = support::WriteFile("a-name-that-is-long.model", smallModel);
    const std::string wrongRow =
        support::WriteFile(longName, support::Replaced(std::string(smallModel), "2 1 1 2 -3", "2 1 1 9 -3"));
    const std::string noInclude = support::WriteFile("b", "include \"" + longName + ".nowhere\"");
    const std::string text = support::WriteFile("text", SmallText(600));
    const std::atomic<bool> raisedBefore{true};
    ReadOptions stopped;
    stopped.stop = &raisedBefore;
    const std::tuple<const char*, int, Attempt> cases[] = {
        {"whole model", 0, ReadsModel(model, false, true)},
        {"whole model, floats", 0, ReadsModel(model, false, false)},
        {"cubes only", 0, ReadsModel(model, true, true)},
        {"undefined material", 151, ReadsModel(wrongRow, false, true)},
        {"missing include", 103, ReadsModel(noInclude, false, true)},
        {"missing model", 103, ReadsModel(model + longName, true, true)},
        {"model in one call", 0, ReadsInOneCall(model, true)},
        {"missing model in one call", 103, ReadsInOneCall(model + longName, true)},
        {"stopped model", 0, ReadsInOneCall(model, true, stopped)},
        {"text in one call", 0, ReadsInOneCall(text, false)},
        {"stopped text", 0, ReadsInOneCall(text, false, stopped)},
        {"text results", 0, ReadsResults(text)},
        {"MAT results", 0, ReadsResults(support::WriteFile("mat", SmallMat(600)))},
        {"short row", 308, ReadsResults(support::WriteFile("short", SmallText(3) + "1\n"))},
        {"second values", 210, ReadsResults(support::WriteFile("second", SmallMat(3) + SmallMat(3).substr(128)))},
        {"missing results", 200, ReadsResults(model + longName)},
    };
    long points = 0;
    for (const auto& [name, expected, attempt] : cases) {
        for (const bool forever : {false, true}) {
            const long found = FailEach(name, expected, attempt, forever);
            EXPECT_GT(found, 0) << name;
            points += found;
        }
    }
    std::cout << "allocations that failed: " << points << '\n';
}

/// Has three threads share a small file.
Attempt ReadsByThreads(const ThreadSubject& subject, const std::string& path) {
    return [&subject, path](Series& series) {
        Model model;
        ModelReader models(path, true, 64);
        models.Threads(3);
        ResultsTxt results(path);
        platform::InputFile file;
        try {
            const auto armed = Arm(series);
            if (subject.isModel) {
                models.Execute(model, true);
            } else if (file.Open(path)) {
                ResultsTxtReader reader(results, nullptr, StopFlag(), 3, 64);
                WithinMemory(module::ResultsTxt, __LINE__, [&] { reader.Execute(file, ""); });
            }
        } catch (const Exception& failure) {
            return failure.code();
        }
        return 0;
    };
}

// What only threads need they do without, so that a read may go well even where memory stays short.
TEST(FailingMemory, OfThreadsLosesNothing) {
    KeepThreads();
    for (const ThreadSubject& subject : ThreadSubjects()) {
        const std::string path = support::WriteFile("shared", subject.content);
        EXPECT_GT(FailEach(subject.name, 0, ReadsByThreads(subject, path), false), 5) << subject.name;
    }
}

}  // namespace
}  // namespace orvalo::faults
