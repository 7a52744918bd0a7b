#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "Common/Workers.h"

namespace orvalo {

/// Has a team go through blocks, numbered from 0, with the result that one thread would have: two steps for each block
/// are taken in the order of the blocks, the others at the same time as those for other blocks.
///
/// A Job has a type Outcome and, called by one member at a time and in the order of the blocks unless marked "at once",
///   bool Fetch(unsigned member, std::uint64_t block): at once; false where there is no such block to be had
///   bool Begin(unsigned member, std::uint64_t block): false where it cannot be worked on
///   Outcome Work(unsigned member, std::uint64_t block): at once
///   bool End(const Outcome& outcome): false where no block is to follow.
/// A step that gives false, or throws, is the end for its block and all after it, or for those after it: some may have
/// been worked on, none is ended.
template <class Job>
class OrderedBlocks {
public:
    OrderedBlocks(Job& job, unsigned int team) : job_(job), team_(team), outcomes_(std::size_t{4} * team) {}

    /// Goes through block 0 on the calling thread, and only where others are to follow has threads started.
    void Run() {
        if (TakeBlock(0) && limit_ > 1) {
            RunTeam(team_, [this](unsigned int member) {
                while (TakeBlock(member)) {
                }
            });
        }
    }

private:
    /// Returns whether there may be another one.
    bool TakeBlock(unsigned int member) {
        const std::optional<std::uint64_t> block = Claim();
        if (!block) return false;
        try {
            if (!job_.Fetch(member, *block)) {
                Limit(*block);
            } else if (Begin(member, *block)) {
                Deliver(*block, job_.Work(member, *block));
            }
        } catch (...) {
            Limit(*block);
            throw;
        }
        return true;
    }

    /// The next block, once it does not lie too far beyond those that are ended.
    std::optional<std::uint64_t> Claim() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return claimed_ >= limit_ || claimed_ < ended_ + outcomes_.size(); });
        return claimed_ < limit_ ? std::optional(claimed_++) : std::nullopt;
    }

    bool Begin(unsigned int member, std::uint64_t block) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return begun_ == block || block >= limit_; });
        if (block >= limit_) return false;
        const bool can = job_.Begin(member, block);
        if (can) ++begun_;
        if (!can) limit_ = block;
        changed_.notify_all();
        return can;
    }

    void Deliver(std::uint64_t block, typename Job::Outcome outcome) {
        const std::lock_guard lock(mutex_);
        OutcomeOf(block) = std::move(outcome);
        while (ended_ < limit_) {
            auto& next = OutcomeOf(ended_);
            if (!next) break;
            ++ended_;
            if (!job_.End(*next)) limit_ = ended_;
            next.reset();
        }
        changed_.notify_all();
    }

    std::optional<typename Job::Outcome>& OutcomeOf(std::uint64_t block) {
        return outcomes_[static_cast<std::size_t>(block % outcomes_.size())];
    }

    void Limit(std::uint64_t block) {
        const std::lock_guard lock(mutex_);
        limit_ = std::min(limit_, block);
        changed_.notify_all();
    }

    Job& job_;
    const unsigned int team_;
    std::mutex mutex_;
    std::condition_variable changed_;
    /// How many blocks were claimed, begun and ended; the first one that is not to be ended.
    std::uint64_t claimed_ = 0;
    std::uint64_t begun_ = 0;
    std::uint64_t ended_ = 0;
    std::uint64_t limit_ = std::numeric_limits<std::uint64_t>::max();
    /// Of the blocks that were worked on before one that precedes them was.
    std::vector<std::optional<typename Job::Outcome>> outcomes_;
};

}  // namespace orvalo
