#include <Orvalo3DReader/Reader/Reader.h>

#include "Common/WithinMemory.h"
#include "Reader/ModelReader.h"

namespace orvalo {

Reader::Reader(const std::string& path, bool cubesOnly)
    : impl_(WithinMemory(module::Reader, __LINE__, [&] { return std::make_unique<ModelReader>(path, cubesOnly); })) {}

Reader::Reader(const Reader& other)
    : impl_(WithinMemory(module::Reader, __LINE__, [&] { return std::make_unique<ModelReader>(*other.impl_); })) {}

Reader& Reader::operator=(const Reader& other) {
    WithinMemory(module::Reader, __LINE__, [&] { *impl_ = *other.impl_; });
    return *this;
}

Reader::~Reader() = default;

void Reader::TraceCurrentCube(unsigned long long* counter) {
    impl_->TraceCurrentCube(counter);
}

void Reader::Threads(unsigned int count) {
    impl_->Threads(count);
}

void Reader::StopOn(const std::atomic<bool>* flag) {
    impl_->StopOn(flag);
}

void Reader::Execute(Model* model, bool doublePrecision) {
    impl_->Execute(*model, doublePrecision);
}

const InputPlace& Reader::FailurePlace() const {
    return impl_->FailurePlace();
}

std::uint64_t Reader::FailureRow() const {
    return impl_->FailureRow();
}

}  // namespace orvalo
