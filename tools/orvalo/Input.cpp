#include "Input.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "PathText.h"
#include "Spool.h"

namespace fs = std::filesystem;

namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

}  // namespace

Input::Input(const std::string& name) : name_(name), path_(name) {
    std::error_code unknown;
    if (name == "-") {
        name_ = "<stdin>";
        spool_ = std::make_unique<Spool>("", "");
    } else if (fs::is_fifo(PathOf(name), unknown)) {
        spool_ = std::make_unique<Spool>(name, TextOf(PathOf(name).parent_path()));
    }
    if (spool_) path_ = spool_->Path();
}

Input::Input(Input&&) noexcept = default;
Input& Input::operator=(Input&&) noexcept = default;
Input::~Input() = default;

bool Input::IsDirectory() const {
    std::error_code unknown;
    return fs::is_directory(PathOf(path_), unknown);
}

std::string Input::Shown(const std::string& opened) const {
    const auto openedPath = PathOf(opened).lexically_normal();
    const auto mainPath = fs::absolute(PathOf(path_)).lexically_normal();
    if (openedPath == mainPath) return name_;
    if (openedPath.parent_path() != mainPath.parent_path()) return opened;
    const fs::path directory = spool_ ? PathOf(spool_->IncludedFrom()) : PathOf(path_).parent_path();
    return TextOf(directory / openedPath.filename());
}

std::string Input::ShownMessage(const std::string& message) const {
    if (!spool_) return message;
    const fs::path directory = PathOf(path_).parent_path();
    const fs::path from = PathOf(spool_->IncludedFrom().empty() ? "." : spool_->IncludedFrom());
    const std::string folder = TextOf((fs::absolute(from) / "").lexically_normal());
    const std::string files = Replaced(Replaced(message, path_, name_), TextOf(directory / ""), folder);
    return Replaced(files, TextOf(directory), folder.size() > 1 ? folder.substr(0, folder.size() - 1) : folder);
}
