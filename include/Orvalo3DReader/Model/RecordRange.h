#pragma once

#include <cstddef>
#include <iterator>

namespace orvalo {

/// How records of a type lie in a buffer: specialised beside the type, with `size`, in bytes, and `Read`, which gives
/// the record that is packed at an address.
template <class Record>
struct Packing;

/// Packed records as values. They belong to whoever the range came from.
template <class Record>
class RecordRange {
public:
    /// A random-access iterator. What it points to is made when it is asked for, so it yields values, not references.
    class Iterator {
    public:
        using iterator_category = std::random_access_iterator_tag;  ///< For the algorithms of the standard library.
        using value_type = Record;                                  ///< A record.
        using difference_type = std::ptrdiff_t;                     ///< In records.
        using reference = Record;                                   ///< A record, by value.
        /// Keeps the record while a member of it is asked for.
        class pointer {
        public:
            /// Points to a copy of `record`.
            explicit pointer(const Record& record) : record_(record) {}
            /// The copy.
            const Record* operator->() const { return &record_; }

        private:
            Record record_;
        };

        /// Points to no record.
        Iterator() = default;
        /// Points to the record that starts at `record`.
        explicit Iterator(const unsigned char* record) : record_(record) {}

        /// The record.
        Record operator*() const { return Packing<Record>::Read(record_); }
        /// A member of the record.
        pointer operator->() const { return pointer(Packing<Record>::Read(record_)); }
        /// The record `distance` records on.
        Record operator[](std::ptrdiff_t distance) const { return *(*this + distance); }

        /// Moves on by `distance` records.
        Iterator& operator+=(std::ptrdiff_t distance) {
            record_ += distance * step;
            return *this;
        }
        /// Moves back by `distance` records.
        Iterator& operator-=(std::ptrdiff_t distance) { return *this += -distance; }
        /// Moves on.
        Iterator& operator++() { return *this += 1; }
        /// Moves back.
        Iterator& operator--() { return *this -= 1; }
        /// Moves on, and gives where it was.
        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        /// Moves back, and gives where it was.
        Iterator operator--(int) {
            const Iterator before = *this;
            --*this;
            return before;
        }

        /// `distance` records on.
        friend Iterator operator+(Iterator from, std::ptrdiff_t distance) { return from += distance; }
        /// `distance` records on.
        friend Iterator operator+(std::ptrdiff_t distance, Iterator from) { return from += distance; }
        /// `distance` records back.
        friend Iterator operator-(Iterator from, std::ptrdiff_t distance) { return from -= distance; }
        /// Records from `b` to `a`.
        friend std::ptrdiff_t operator-(Iterator a, Iterator b) { return (a.record_ - b.record_) / step; }
        /// @{
        /// By their places in the range.
        friend bool operator==(Iterator a, Iterator b) { return a.record_ == b.record_; }
        friend bool operator!=(Iterator a, Iterator b) { return a.record_ != b.record_; }
        friend bool operator<(Iterator a, Iterator b) { return a.record_ < b.record_; }
        friend bool operator>(Iterator a, Iterator b) { return a.record_ > b.record_; }
        friend bool operator<=(Iterator a, Iterator b) { return a.record_ <= b.record_; }
        friend bool operator>=(Iterator a, Iterator b) { return a.record_ >= b.record_; }
        /// @}

    private:
        static constexpr auto step = static_cast<std::ptrdiff_t>(Packing<Record>::size);

        const unsigned char* record_ = nullptr;
    };

    using value_type = Record;        ///< A record.
    using iterator = Iterator;        ///< For the algorithms of the standard library.
    using const_iterator = Iterator;  ///< For the algorithms of the standard library.

    /// `count` records from `records` on.
    RecordRange(const unsigned char* records, std::size_t count) : records_(records), count_(count) {}

    /// The first record.
    Iterator begin() const { return Iterator(records_); }
    /// Past the last record.
    Iterator end() const { return Iterator(records_ + count_ * Packing<Record>::size); }
    /// Number of records.
    std::size_t size() const { return count_; }
    /// Whether there are none.
    bool empty() const { return count_ == 0; }
    /// Record `index`. Not range-checked.
    Record operator[](std::size_t index) const {
        return Packing<Record>::Read(records_ + index * Packing<Record>::size);
    }

private:
    const unsigned char* records_;
    std::size_t count_;
};

}  // namespace orvalo
