#include "DeclaredCubes.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "ModelWords.h"
#include "PathText.h"

namespace {

// The look ahead stays cheap whatever the files hold.
constexpr std::size_t headSize = 1 << 16;
constexpr int maxFiles = 16;

class Search {
public:
    explicit Search(const std::filesystem::path& directory) : directory_(directory) {}

    /// True once the search is over: the count was found, or the rows began without one.
    bool Scan(const std::string& path) {
        if (++files_ > maxFiles) return true;
        const std::string head = ReadHead(path, headSize);
        ModelWords words(head);
        for (std::string word = words.Next(); !word.empty(); word = words.Next()) {
            if (word == "include") {
                const std::string name = words.Next();
                if (name.size() > 1 && name[0] == '"' && Scan(TextOf(directory_ / PathOf(name.substr(1))))) return true;
            } else if (!inCubes_) {
                inCubes_ = word == "cubes";
            } else if (word == "count") {
                // Written as any number may be, such as 2e6.
                const double declared = std::strtod(words.Next().c_str(), nullptr);
                count = declared >= 1 && declared < 1e18 ? static_cast<std::uint64_t>(declared) : 0;
                return true;
            } else if (word == "data") {
                return true;
            }
        }
        return false;
    }

    std::uint64_t count = 0;

private:
    std::filesystem::path directory_;
    bool inCubes_ = false;
    int files_ = 0;
};

}  // namespace

std::uint64_t DeclaredCubes(const std::string& path) {
    Search search(PathOf(path).parent_path());
    search.Scan(path);
    return search.count;
}
