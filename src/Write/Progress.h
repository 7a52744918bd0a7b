#pragma once

#include <algorithm>
#include <cstdint>

#include "Common/Publish.h"

namespace orvalo {

/// How much of a write is done, in units that take about the same time each.
class Progress {
public:
    /// `watched`, or null, is where the percentage is stored.
    Progress(float* watched, std::uint64_t total) : watched_(watched), total_(std::max<std::uint64_t>(total, 1)) {
        Publish(watched_, 0.0F);
    }

    void Add(std::uint64_t units) {
        done_ = std::min(done_ + units, total_);
        Publish(watched_, static_cast<float>(static_cast<double>(done_) / static_cast<double>(total_) * 99.0));
    }
    /// The last percent is for what comes after the last unit.
    void Complete() { Publish(watched_, 100.0F); }

private:
    float* watched_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
};

}  // namespace orvalo
