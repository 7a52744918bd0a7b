#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include "Common/Platform.h"

namespace orvalo::platform {

namespace {

using GroupPath = std::array<char, 4096>;

/// What a small file begins with; nothing where it cannot be read.
template <std::size_t n>
std::string_view Content(const char* path, std::array<char, n>& buffer) noexcept {
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return {};
    const ssize_t got = ::read(descriptor, buffer.data(), n);
    ::close(descriptor);
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
}

std::string_view TakeUpTo(std::string_view& text, char separator) noexcept {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

/// How many processors' time may be used: `quota` in each `period`, rounded up; 0 where there is no quota.
unsigned int Allowed(std::string_view quota, std::string_view period) noexcept {
    unsigned int used = 0;
    unsigned int of = 0;
    if (std::from_chars(quota.data(), quota.data() + quota.size(), used).ec != std::errc()) return 0;
    if (std::from_chars(period.data(), period.data() + period.size(), of).ec != std::errc() || of == 0) return 0;
    return std::max(used / of + (used % of == 0 ? 0U : 1U), 1U);
}

/// What the control group of that path below `mount` allows; 0 for anything.
unsigned int AllowedBy(std::string_view mount, std::string_view group) noexcept {
    const auto content = [&](const char* name, auto& buffer) {
        GroupPath path;
        const int size = std::snprintf(path.data(), path.size(), "%.*s%.*s/%s", static_cast<int>(mount.size()),
                                       mount.data(), static_cast<int>(group.size()), group.data(), name);
        const bool fits = size > 0 && static_cast<std::size_t>(size) < path.size();
        return fits ? Content(path.data(), buffer) : std::string_view();
    };
    std::array<char, 64> first;
    std::array<char, 64> second;
    if (std::string_view both = content("cpu.max", first); !both.empty()) {
        const std::string_view quota = TakeUpTo(both, ' ');
        return Allowed(quota, both);
    }
    return Allowed(content("cpu.cfs_quota_us", first), content("cpu.cfs_period_us", second));
}

/// What the control groups that the process is in allow, each and those above it; 0 for anything.
unsigned int AllowedByGroups() noexcept {
    GroupPath buffer;
    std::string_view groups = Content("/proc/self/cgroup", buffer);
    unsigned int least = 0;
    while (!groups.empty()) {
        // The number of a hierarchy, what it controls, the path of the group. Hierarchy 0 controls everything.
        std::string_view group = TakeUpTo(groups, '\n');
        const bool everything = TakeUpTo(group, ':') == "0";
        const std::string_view controlled = TakeUpTo(group, ':');
        if (!everything && controlled != "cpu" && controlled != "cpu,cpuacct") continue;
        const std::string_view mount = everything ? "/sys/fs/cgroup" : "/sys/fs/cgroup/cpu";
        for (;;) {
            if (group.ends_with('/')) group.remove_suffix(1);
            const unsigned int allowed = AllowedBy(mount, group);
            if (allowed != 0) least = least == 0 ? allowed : std::min(least, allowed);
            if (group.empty()) break;
            group = group.substr(0, group.rfind('/') + 1);
        }
    }
    return least;
}

}  // namespace

unsigned int ProcessorCount() noexcept {
    long count = 0;
#if defined(__linux__)
    cpu_set_t usable;
    if (::sched_getaffinity(0, sizeof usable, &usable) == 0) count = CPU_COUNT(&usable);
#endif
    if (count == 0) count = ::sysconf(_SC_NPROCESSORS_ONLN);
    const auto processors = static_cast<unsigned int>(std::max(count, 1L));
    const unsigned int allowed = AllowedByGroups();
    return allowed == 0 ? processors : std::min(processors, allowed);
}

}  // namespace orvalo::platform
