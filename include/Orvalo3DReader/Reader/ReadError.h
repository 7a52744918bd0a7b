#pragma once

#include <cstdint>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo {

/// What is wrong with a model file, and where.
class ORVALO3DREADER_EXPORT ReadError : public Exception {
public:
    /// The same failure as `failure`, at `place` and in row `row`.
    ReadError(const Exception& failure, InputPlace place, std::uint64_t row);
    /// Copies all.
    ReadError(const ReadError&) = default;
    /// Copies all.
    ReadError& operator=(const ReadError&) = default;
    ~ReadError() override;

    /// The true place of the first byte of the token, or of the number in a bulk row, at which reading stopped. Not
    /// known where no file was being read, or where memory did not suffice for its path.
    const InputPlace& Place() const { return place_; }
    /// The row of a CUBES, DAMPING or SET section at which reading stopped, counted from 1. Outside of such rows 0.
    std::uint64_t Row() const { return row_; }

private:
    InputPlace place_;
    std::uint64_t row_;
};

}  // namespace orvalo
