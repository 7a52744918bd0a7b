#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Faults/Faults.h"
#include "Faults/Subjects.h"
#include "Support/RoundTrip.h"

namespace orvalo::faults {
namespace {

/// Files in a directory of their own, with all that stands beside them.
class Folder {
public:
    Folder() : path_(support::ScratchDirectory() + "/folder") { std::filesystem::create_directory(path_); }
    ~Folder() { std::filesystem::remove_all(path_); }

    std::string Path(const std::string& name) const { return path_ + '/' + name; }
    void Put(const std::string& name, std::string_view content) const { support::WriteFile("folder/" + name, content); }
    /// Names and contents of all files.
    std::string Shown() const {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            files.push_back(entry.path().filename().string() + ": " + support::FileBytes(entry.path().string()) + '\n');
        }
        std::sort(files.begin(), files.end());
        std::string shown;
        for (const std::string& file : files) shown += file;
        return shown;
    }

private:
    std::string path_;
};

struct Written {
    const char* name;
    std::function<void(const std::string& path, const WriteOptions&)> write;
    WriteOptions options;
};

WriteOptions Included() {
    WriteOptions options;
    options.cubesFile = "target.cubes";
    options.comment = "two\nlines";
    return options;
}

const std::vector<Written>& Subjects() {
    support::WriteFile("inc", includedPart);
    static const Model model = ReadModel(support::WriteFile("whole.model", smallModel));
    static const auto text = ReadResults(support::WriteFile("small.txt", SmallText(300)));
    static const auto mat = ReadResults(support::WriteFile("small.mat", SmallMat(300)));
    const auto writesModel = [](const std::string& path, const WriteOptions& o) { WriteModel(model, path, o); };
    static const std::vector<Written> subjects = {
        {"model", writesModel, {}},
        {"model of two files", writesModel, Included()},
        {"text", [](const std::string& path, const WriteOptions& o) { WriteResultsTxt(*text, path, o); }, {}},
        {"text of a MAT-file",
         [](const std::string& path, const WriteOptions& o) { WriteResultsTxt(*mat, path, o); },
         {}},
        {"MAT-file", [](const std::string& path, const WriteOptions& o) { WriteResultsMat(*mat, path, o); }, {}},
        {"MAT-file of a text",
         [](const std::string& path, const WriteOptions& o) { WriteResultsMat(*text, path, o); },
         {}},
    };
    return subjects;
}

/// Writes each subject where something is and is not, with what `arm` puts in the way, until `arm` says that it no
/// longer does: the directory is then as it was, and what was held is released. Returns how often it failed.
long FailEach(const std::function<bool(long k, const std::function<void()>& write)>& armedAndReached) {
    long failures = 0;
    for (const Written& subject : Subjects()) {
        for (const bool overwrite : {false, true}) {
            for (long k = 1;; ++k) {
                const Folder folder;
                if (overwrite) folder.Put("target", "what was there");
                if (overwrite) folder.Put("target.cubes", "what was there too");
                const std::string before = folder.Shown();
                const std::string path = folder.Path("target");
                WriteOptions options = subject.options;
                options.overwrite = overwrite;
                options.stop = &raised;
                const Held heldBefore = held;
                bool written = false;
                const bool reached = armedAndReached(k, [&] {
                    try {
                        subject.write(path, options);
                        written = true;
                    } catch (const Stopped&) {
                    } catch (const WriteError& failure) {
                        EXPECT_NE(failure.what().find("target"), std::string::npos) << failure.what();
                    } catch (const Exception& failure) {
                        EXPECT_EQ(failure.code(), 102);
                    }
                });
                EXPECT_EQ(held, heldBefore) << subject.name << ", k = " << k;
                if (written) {
                    EXPECT_EQ(folder.Shown().find(".orvalo"), std::string::npos);
                    EXPECT_NE(folder.Shown(), before);
                } else {
                    EXPECT_EQ(folder.Shown(), before) << subject.name << ", k = " << k;
                    ++failures;
                }
                EXPECT_TRUE(reached || written) << subject.name << ", k = " << k;
                if (!reached) break;
            }
        }
    }
    return failures;
}

long FailEachOf(Series*& calls) {
    return FailEach([&calls](long k, const std::function<void()>& write) {
        Series series{k};
        calls = &series;
        write();
        calls = nullptr;
        return series.Reached();
    });
}

TEST(FailingWrites, LeaveWhatWasThere) {
    const long calls = FailEachOf(saving);
    const long opens = FailEachOf(opening);
    const long sizes = FailEach([](long k, const std::function<void()>& write) {
        room = static_cast<std::size_t>(k) * 61 - 61;
        write();
        const bool reached = room == 0;
        room = static_cast<std::size_t>(-1);
        return reached;
    });
    const long allocations = FailEachOf(memory);
    const long stops = FailEach([](long k, const std::function<void()>& write) {
        Series series{k};
        raising = &series;
        write();
        raising = nullptr;
        raised = false;
        // A flag that the last call raises is seen before the file gets its name.
        return series.Reached();
    });
    std::cout << "failing calls: " << calls << " and " << opens << " to open, full media: " << sizes
              << ", allocations: " << allocations << ", stops: " << stops << '\n';
    EXPECT_TRUE(calls > 50 && opens > 10 && sizes > 500 && allocations > 100);
}

TEST(FailingWrites, ShortAndInterruptedOnesDoNotMatter) {
    for (const Written& subject : Subjects()) {
        const Folder folder;
        subject.write(folder.Path("usual"), subject.options);
        const std::string usual = support::FileBytes(folder.Path("usual"));
        for (unsigned int seed = 0; seed < 5; ++seed) {
            transfer = {seed == 0 ? 1 : 100 * seed, seed, seed % 2 != 0};
            links = seed % 3 != 0;
            WriteOptions options = subject.options;
            options.overwrite = seed % 2 != 0;
            const std::string name = "target" + std::string(seed / 2, 's');
            options.cubesFile += options.cubesFile.empty() ? "" : name;
            subject.write(folder.Path(name), options);
            transfer = {};
            links = true;
            std::string bytes = support::FileBytes(folder.Path(name));
            if (!options.cubesFile.empty()) bytes = support::Replaced(bytes, options.cubesFile, "target.cubes");
            EXPECT_EQ(bytes, usual) << subject.name << ", seed " << seed;
            EXPECT_EQ(folder.Shown().find(".orvalo"), std::string::npos);
        }
    }
}

#if !defined(_WIN32)
TEST(FailingWrites, TargetsThatCannotBe) {
    const Folder folder;
    std::filesystem::create_directory(folder.Path("directory"));
    folder.Put("read-only", "read-only");
    std::filesystem::permissions(folder.Path("read-only"), std::filesystem::perms::owner_read);
    folder.Put("there", "there");
    std::filesystem::create_symlink("/dev/full", folder.Path("full"));
    const struct {
        std::string path;
        bool overwrite;
        const char* why;
    } cases[] = {
        {folder.Path("missing/target"), true, "No such file or directory"},
        {folder.Path("there/target"), true, "Not a directory"},
        {folder.Path("directory"), true, "it is there and not a regular file"},
        {folder.Path("read-only"), true, "it is read-only"},
        {folder.Path("there"), false, "it exists already"},
        {folder.Path("full"), true, "it is there and not a regular file"},
        {"/dev/full", true, "it is there and not a regular file"},
        {"/proc/target", true, "No such file or directory"},
        {"", true, "No such file or directory"},
        {std::string("a\0b", 3), true, "the path has a NUL"},
    };
    for (const Written& subject : Subjects()) {
        for (const auto& c : cases) {
            WriteOptions options;
            options.overwrite = c.overwrite;
            try {
                subject.write(c.path, options);
                ADD_FAILURE() << subject.name << " was written to " << c.path;
            } catch (const WriteError& failure) {
                EXPECT_EQ(failure.what(), "Unable to write '" + std::string(c.path.c_str()) + "': " + c.why);
            }
        }
        // Permissions stay those of what is replaced.
        std::filesystem::permissions(folder.Path("there"), std::filesystem::perms(0640));
        subject.write(folder.Path("there"), support::Overwriting());
        EXPECT_EQ(std::filesystem::status(folder.Path("there")).permissions(), std::filesystem::perms(0640));
    }
    EXPECT_EQ(support::FileBytes(folder.Path("read-only")), "read-only");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}
#endif

TEST(Writing, StopsAndTellsItsProgress) {
    const std::atomic<bool> stop{true};
    for (const Written& subject : Subjects()) {
        const Folder folder;
        float percent = -1;
        WriteOptions options = subject.options;
        options.percentWritten = &percent;
        subject.write(folder.Path("target"), options);
        EXPECT_EQ(percent, 100.0F) << subject.name;
        options.stop = &stop;
        options.overwrite = true;
        const std::string before = folder.Shown();
        try {
            subject.write(folder.Path("target"), options);
            ADD_FAILURE() << subject.name;
        } catch (const Stopped& stopped) {
            EXPECT_EQ(stopped.what(), "Writing was stopped.");
        }
        EXPECT_EQ(folder.Shown(), before);
    }
}

}  // namespace
}  // namespace orvalo::faults
