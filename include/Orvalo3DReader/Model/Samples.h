#pragma once

#include <cstddef>

namespace orvalo {

/// The samples of a table, as numbers of type `Number`. They belong to the table and its copies.
template <class Number>
class Samples {
public:
    /// No samples.
    Samples() = default;
    /// `count` samples from `data` on.
    Samples(const Number* data, std::size_t count) : data_(data), count_(count) {}

    /// The first sample, or null.
    const Number* data() const { return data_; }
    /// Number of samples.
    std::size_t size() const { return count_; }
    /// Whether there are none.
    bool empty() const { return count_ == 0; }
    /// The first sample.
    const Number* begin() const { return data_; }
    /// Past the last sample.
    const Number* end() const { return data_ + count_; }
    /// Sample `index`. Not range-checked.
    const Number& operator[](std::size_t index) const { return data_[index]; }

private:
    const Number* data_ = nullptr;
    std::size_t count_ = 0;
};

}  // namespace orvalo
