#include <utility>

#include <Orvalo3DReader/Reader/ReadError.h>

namespace orvalo {

ReadError::ReadError(const Exception& failure, InputPlace place, std::uint64_t row)
    : Exception(failure), place_(std::move(place)), row_(row) {}

ReadError::~ReadError() = default;

}  // namespace orvalo
