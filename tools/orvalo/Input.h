#pragma once

#include <memory>
#include <string>

class Spool;

/// A file named on the command line. What can be read only once, standard input (named "-") and pipes, is copied into
/// a temporary file for as long as the object lives, so that it can be looked at again.
class Input {
public:
    explicit Input(const std::string& name);
    Input(Input&&) noexcept;
    Input& operator=(Input&&) noexcept;
    ~Input();

    /// As it is called in messages.
    const std::string& Name() const { return name_; }
    /// Where its bytes are.
    const std::string& Path() const { return path_; }
    bool IsDirectory() const;

    /// A path by which the library opened the file, or one that it includes, in the terms in which the user named the
    /// file.
    std::string Shown(const std::string& opened) const;
    /// A message of the library in which no temporary file is named.
    std::string ShownMessage(const std::string& message) const;

private:
    std::string name_;
    std::string path_;
    std::unique_ptr<Spool> spool_;
};
