#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Common/WithinMemory.h"
#include "Faults/Subjects.h"
#include "Results/ResultsTxtReader.h"

/// What several threads read, in small portions, so that small files are shared.
namespace orvalo::faults {

struct ThreadSubject {
    const char* name;
    bool isModel;
    std::string content;
    /// What came of it, "code text" for an error. Throws Stopped where `stop` is raised.
    std::function<std::string(const std::string& path, unsigned int threads, const std::atomic<bool>* stop)> read;
};

inline std::string ReadsRows(const std::string& path, unsigned int threads, const std::atomic<bool>* stop) {
    support::Outcome outcome;
    ModelReader reader(path, true, 64);
    reader.Threads(threads);
    reader.StopOn(stop);
    try {
        reader.Execute(*outcome.model, true);
    } catch (const ReadError& failure) {
        outcome.code = failure.code();
        outcome.what = failure.what();
        outcome.place = failure.Place();
        outcome.row = failure.Row();
    }
    return (outcome.code != 0 ? std::to_string(outcome.code) + ' ' : "") + support::Fingerprint(outcome);
}

inline std::string ReadsLines(const std::string& path, unsigned int threads, const std::atomic<bool>* stop) {
    float progress = 0;
    std::string text;
    try {
        const std::unique_ptr<Results> results = WithinMemory(module::ResultsTxt, 1, [&] {
            auto read = std::make_unique<ResultsTxt>(path);
            platform::InputFile file;
            if (!file.Open(path)) ORVALO_RAISE(ResultsReader, ReaderMessages::ErrorOpeningResultsFile, "");
            ResultsTxtReader(*read, &progress, StopFlag(stop), threads, 64).Execute(file, "");
            return read;
        });
        text = Describe(*results);
    } catch (const Stopped&) {
        throw;
    } catch (const Exception& failure) {
        text = Describe(failure, path);
    }
    return text + " up to " + std::to_string(progress);
}

/// Has the C library keep what it takes for as many threads at once, which counts as held.
inline void KeepThreads() {
    // No barrier: that of GCC 12 may sleep on where the system cannot wait for a value.
    std::atomic<int> missing{4};
    const auto wait = [&missing] {
        for (--missing; missing > 0;) std::this_thread::yield();
    };
    std::thread threads[] = {std::thread(wait), std::thread(wait), std::thread(wait), std::thread(wait)};
    for (std::thread& thread : threads) thread.join();
}

inline const std::vector<ThreadSubject>& ThreadSubjects() {
    static const std::vector<ThreadSubject> subjects = [] {
        std::string cubes = "CUBES count 60 format 0 data\n";
        std::string temperatures = "CUBES count 60 format 1 data\n";
        for (int i = 0; i < 60; ++i) {
            cubes += std::to_string(i * 37) + " 2 3 4\n";
            temperatures += std::to_string(i * 37) + " 2 3 4 -1.5e1\r\n";
        }
        return std::vector<ThreadSubject>{{"cubes", true, cubes + "END END\n", ReadsRows},
                                          {"temperatures", true, temperatures + "END END\n", ReadsRows},
                                          {"text", false, SmallText(60), ReadsLines}};
    }();
    return subjects;
}

}  // namespace orvalo::faults
