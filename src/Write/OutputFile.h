#pragma once

#include <cstddef>
#include <string>

#include "Common/Platform.h"

namespace orvalo {

/// A file on its way to its path. It is written under another name in the same directory and gets its own once it is
/// whole. Whatever happens before, the path is left as it was, and nothing is left beside it. All operations throw
/// WriteError where the system refuses.
class OutputFile {
public:
    /// Refuses a path that is taken, unless by a regular file that may be replaced.
    OutputFile(const std::string& path, bool overwrite);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    void Write(const void* data, std::size_t size);
    /// After the last write: has all of it reach the medium.
    void Finish();
    /// Gives the file its name.
    void MoveIntoPlace();
    /// The same, but what was there comes back unless the file is then kept: for one that makes sense only with
    /// another.
    void MoveIntoPlaceForNow();
    void Keep() noexcept;

private:
    [[noreturn]] void Fail() const;
    void Move();
    std::string NewName() const;

    const std::string path_;
    const bool overwrite_;
    platform::NewFile file_;
    /// Where the file is, and what it is to replace, while they have other names than their own.
    std::string writtenName_;
    std::string asideName_;
    bool takeBack_ = false;
};

}  // namespace orvalo
