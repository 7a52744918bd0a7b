#include <gtest/gtest.h>

#include <Orvalo3DReader/Common/Stopped.h>

#include "Faults/Faults.h"
#include "Faults/ThreadSubjects.h"

namespace orvalo::faults {
namespace {

// Whatever the place from which on a file cannot be read, or where it ends though it seemed longer, several threads
// tell what one does.
TEST(FaultyThreads, MeetReadErrorsAndEndsWhereOneDoes) {
    for (const ThreadSubject& subject : ThreadSubjects()) {
        const std::string path = support::WriteFile("shared", subject.content);
        for (std::size_t place = 0; place < subject.content.size(); place += 3) {
            for (std::size_t Transfer::*const fault : {&Transfer::unreadable, &Transfer::end}) {
                transfer.*fault = place;
                const std::string one = subject.read(path, 1, nullptr);
                const std::string three = subject.read(path, 3, nullptr);
                transfer = {};
                ASSERT_EQ(three, one) << subject.name << " at " << place;
            }
        }
    }
}

// A call that fails where others do not ends in a message or, where it was a thread's, in nothing at all.
TEST(FaultyThreads, EndInTheirMessageOrGoOn) {
    KeepThreads();
    for (const ThreadSubject& subject : ThreadSubjects()) {
        const std::string path = support::WriteFile("shared", subject.content);
        const std::string usual = subject.read(path, 1, nullptr);
        for (long k = 1;; ++k) {
            Series series{k};
            reading = &series;
            const Held before = held;
            {
                const std::string outcome = subject.read(path, 3, nullptr);
                reading = nullptr;
                const bool isRight = outcome == usual || outcome.starts_with("104 ") || outcome.starts_with("201 ");
                EXPECT_TRUE(isRight) << subject.name << ": " << outcome;
            }
            EXPECT_EQ(held, before) << subject.name << ", k = " << k;
            if (!series.Reached()) break;
        }
    }
}

TEST(FaultyThreads, StopWhereverAFileIsReadAndLoseNothing) {
    KeepThreads();
    for (const ThreadSubject& subject : ThreadSubjects()) {
        const std::string path = support::WriteFile("shared", subject.content);
        for (long k = 1;; ++k) {
            Series series{k};
            raising = &series;
            raised = false;
            const Held before = held;
            bool stopped = false;
            try {
                subject.read(path, 3, &raised);
            } catch (const Stopped&) {
                stopped = true;
            }
            raising = nullptr;
            EXPECT_EQ(held, before) << subject.name << ", k = " << k;
            if (!series.Reached()) break;
            // After the last call, which sees the end of the file, nothing asks.
            EXPECT_TRUE(stopped || series.calls <= k + 1) << subject.name << ", k = " << k;
        }
    }
    raised = false;
}

}  // namespace
}  // namespace orvalo::faults
