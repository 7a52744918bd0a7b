#include "Write/OutputFile.h"

#include <atomic>

#include "Write/Refusal.h"

namespace orvalo {

namespace {

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.find_last_of(platform::separators);
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool IsThere(const std::string& path) {
    return platform::LookAtTarget(path) != platform::Target::Nothing;
}

}  // namespace

OutputFile::OutputFile(const std::string& path, bool overwrite) : path_(path), overwrite_(overwrite) {
    using platform::Target;
    if (path.find('\0') != std::string::npos) Refuse("Unable to write '", path.c_str(), "': the path has a NUL");
    const Target target = platform::LookAtTarget(path);
    if (target == Target::OtherThing) Refuse("Unable to write '", path, "': it is there and not a regular file");
    if (target != Target::Nothing && !overwrite) Refuse("Unable to write '", path, "': it exists already");
    if (target == Target::ReadOnlyFile) Refuse("Unable to write '", path, "': it is read-only");
    constexpr int tries = 100;
    for (int i = 0; i < tries; ++i) {
        std::string name = NewName();
        if (file_.Create(name)) {
            writtenName_.swap(name);
            break;
        }
        if (!platform::NameIsTaken(platform::LastFailure())) break;
    }
    if (writtenName_.empty()) Fail();
    if (target == Target::Nothing || file_.TakePermissions(path)) return;
    const int failure = platform::LastFailure();
    file_.Close();
    platform::RemoveFile(writtenName_);
    Refuse("Unable to write '", path, "': ", platform::FailureText(failure));
}

OutputFile::~OutputFile() {
    file_.Close();
    if (takeBack_) platform::RemoveFile(path_);
    if (!asideName_.empty()) platform::MoveOver(asideName_, path_);
    if (!writtenName_.empty()) platform::RemoveFile(writtenName_);
}

void OutputFile::Write(const void* data, std::size_t size) {
    if (!file_.Write(data, size)) Fail();
}

void OutputFile::Finish() {
    if (!file_.Finish()) Fail();
}

void OutputFile::MoveIntoPlace() {
    Move();
}

void OutputFile::MoveIntoPlaceForNow() {
    if (IsThere(path_) && overwrite_) {
        std::string aside = NewName();
        if (!platform::MoveToFreeName(path_, aside)) Fail();
        asideName_.swap(aside);
    }
    Move();
    takeBack_ = true;
}

void OutputFile::Keep() noexcept {
    takeBack_ = false;
    if (!asideName_.empty()) platform::RemoveFile(asideName_);
    asideName_.clear();
}

void OutputFile::Move() {
    const bool moved =
        overwrite_ ? platform::MoveOver(writtenName_, path_) : platform::MoveToFreeName(writtenName_, path_);
    if (!moved) Fail();
    writtenName_.clear();
}

/// Says what the last call of the system failed for.
void OutputFile::Fail() const {
    Refuse("Unable to write '", path_, "': ", platform::FailureText(platform::LastFailure()));
}

/// A name in the directory of the path: a short one, as names have a greatest length.
std::string OutputFile::NewName() const {
    static std::atomic<unsigned long> count{0};
    return DirectoryOf(path_) + ".orvalo-" + std::to_string(platform::ProcessNumber()) + '-' + std::to_string(++count);
}

}  // namespace orvalo
