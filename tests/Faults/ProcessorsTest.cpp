#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>

#include "Common/Platform.h"
#include "Faults/Faults.h"
#include "Support/ModelFiles.h"

namespace orvalo::faults {
namespace {

// What /proc/self/cgroup says, the files below /sys/fs/cgroup, and how many processors may be used then, if there are
// as many; 0 for all there are.
TEST(Processors, AreThoseThatTheControlGroupsAllow) {
    using Files = std::vector<std::pair<std::string, std::string>>;
    const Files old = {{"cpu/g/cpu.cfs_quota_us", "100000\n"}, {"cpu/g/cpu.cfs_period_us", "100000\n"}};
    const std::tuple<std::string, Files, unsigned int> table[] = {
        {"", {}, 0},
        {"0::/a/b\n", {}, 0},
        {"0::/a/b\n", {{"a/b/cpu.max", "100000 100000\n"}}, 1},
        {"0::/a/b\n", {{"a/b/cpu.max", "max 100000\n"}}, 0},
        {"0::/a/b\n", {{"a/b/cpu.max", "900000 100000\n"}, {"a/cpu.max", "50000 100000\n"}}, 1},
        {"0::/a/b\n", {{"a/b/cpu.max", "50000 100000\n"}, {"cpu.max", "900000 100000\n"}}, 1},
        {"0::/\n", {{"cpu.max", "100001 100000\n"}}, 2},
        {"0::/\n", {{"cpu.max", "1 100000"}}, 1},
        {"0::/\n", {{"cpu.max", "0 100000\n"}}, 1},
        {"0::/\n", {{"cpu.max", "100000 0\n"}}, 0},
        {"0::/\n", {{"cpu.max", "100000\n"}}, 0},
        {"4:cpu:/g\n0::/\n", old, 1},
        {"5:name=systemd:/g\n4:cpu,cpuacct:/g", old, 1},
        {"4:cpu:/g/below\n", old, 1},
        {"4:cpuacct:/g\n4:memory:/g\n", old, 0},
        {"4:cpu:/g\n", {{"cpu/g/cpu.cfs_quota_us", "-1\n"}, {"cpu/g/cpu.cfs_period_us", "100000\n"}}, 0},
        {"0::/" + std::string(4080, 'x'), {{"cpu.max", "100000 100000\n"}}, 1},
        {"damaged\n::\n", {{"cpu.max", "100000 100000\n"}}, 0},
    };
    const std::string root = support::ScratchDirectory() + "/system";
    systemRoot = root.c_str();
    const unsigned int all = platform::ProcessorCount();
    for (const auto& [groups, files, allowed] : table) {
        std::filesystem::remove_all(root);
        std::filesystem::create_directories(root + "/proc/self");
        if (!groups.empty()) support::WriteFile("system/proc/self/cgroup", groups);
        for (const auto& [name, content] : files) {
            const std::string path = "system/sys/fs/cgroup/" + name;
            std::filesystem::create_directories(root + "/../" + path.substr(0, path.rfind('/')));
            support::WriteFile(path, content);
        }
        EXPECT_EQ(platform::ProcessorCount(), allowed == 0 ? all : std::min(all, allowed)) << groups;
    }
    systemRoot = nullptr;
}

TEST(Processors, AreThoseThatTheProcessMayRunOn) {
#if defined(__linux__)
    cpu_set_t usual;
    ASSERT_EQ(::sched_getaffinity(0, sizeof usual, &usual), 0);
    int first = 0;
    while (!CPU_ISSET(first, &usual)) ++first;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(platform::ProcessorCount(), 1U);
    EXPECT_EQ(::sched_setaffinity(0, sizeof usual, &usual), 0);
#endif
}

}  // namespace
}  // namespace orvalo::faults
