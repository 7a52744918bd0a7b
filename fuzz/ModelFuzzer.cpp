#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <Orvalo3DReader/Check/CheckModel.h>
#include <Orvalo3DReader/Check/Rules.h>
#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/ReadError.h>

#include "Catalogue.h"
#include "Check.h"
#include "ModelChecks.h"
#include "Reader/ModelReader.h"
#include "Support/ModelFiles.h"

/// Reads models. A byte of value 255, which no model holds outside of comments, ends a file of the input: the first
/// one is the main file, the next three are what it may include as "inc1", "inc2" and "inc3".
namespace {

using namespace orvalo;
using fuzz::Check;

/// The files of an input.
class Files {
public:
    void Set(std::string_view input) {
        for (std::size_t i = 0; i < std::size(names); ++i) {
            const std::size_t end = i + 1 < std::size(names) ? input.find('\xFF') : std::string_view::npos;
            contents_[i] = input.substr(0, end);
            exists_[i] = i == 0 || input.data() != nullptr;
            support::WriteFile(names[i], contents_[i]);
            if (!exists_[i]) std::filesystem::remove(Path(i));
            input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
        }
    }

    static std::string Path(std::size_t i) { return support::ScratchDirectory() + '/' + names[i]; }

    /// The content of the file of that path or name; null for any other.
    const std::string_view* Find(std::string_view pathOrName) const {
        const std::string sought = support::WithSlashes(std::string(pathOrName));
        for (std::size_t i = 0; i < std::size(names); ++i) {
            if (exists_[i] && (sought == Path(i) || sought == names[i])) return &contents_[i];
        }
        return nullptr;
    }

private:
    static constexpr const char* names[] = {"main", "inc1", "inc2", "inc3"};

    std::string_view contents_[std::size(names)];
    bool exists_[std::size(names)] = {};
};

void CheckPlace(const Files& files, const InputPlace& place) {
    const std::string_view* const content = files.Find(place.path);
    Check(content != nullptr || place.offset == 0, "a place lies in a file that was there to read");
    if (content == nullptr) return;
    Check(place.offset <= content->size(), "a place lies inside its file");
    std::uint64_t line = 1;
    std::uint64_t column = 1;
    for (const char c : content->substr(0, place.offset)) {
        ++column;
        if (c == '\n') {
            ++line;
            column = 1;
        }
    }
    Check(place.line == line && place.column == column, "line and column of a place follow from its offset");
}

/// Takes the place off a message that carries one, or returns it whole.
std::string_view CheckHead(const Files& files, const Exception& failure, const InputPlace& place) {
    constexpr std::string_view start = "Error in file \"";
    std::string_view text = failure.what();
    if (text.substr(0, start.size()) != start) return text;
    const std::size_t end = text.find(":\n");
    Check(end != std::string_view::npos, "a located message has its line");
    Check(fuzz::Matches("Error in file \"%s\", line %d, column %d", text.substr(0, end)), "a message tells its place");
    const std::string_view name = text.substr(start.size(), text.find('"', start.size()) - start.size());
    // A directory can be opened, and then not be read.
    const bool isDirectory = failure.code() == 104 && (name == "." || name == "..");
    Check(isDirectory || files.Find(name) != nullptr, "a message names a file that was read");
    Check(place.Known(), "a located message has its true place");
    return text.substr(end + 2);
}

void CheckFailure(const Files& files, ReadError& failure) {
    const InputPlace& place = failure.Place();
    Check(MayEndModel(failure.code()), "the code is one of model files");
    const std::string_view text = CheckHead(files, failure, place);
    Check(fuzz::IsCatalogueText(failure.code(), text), "the text is the catalogue's");
    if (place.Known()) CheckPlace(files, place);
    Check(failure.line() > 0 && !failure.file().empty(), "the source place is told");
    Check(failure.description().find(failure.what()) == 0, "the description begins with the message");
}

/// Reads once, checks what came of it and returns all of it as text.
std::string Read(const Files& files, bool cubesOnly, bool doublePrecision, std::size_t bufferSize,
                 unsigned int threads = 1) {
    Model model;
    ModelReader reader(files.Path(0), cubesOnly, bufferSize);
    reader.Threads(threads);
    unsigned long long cubes = 0;
    reader.TraceCurrentCube(&cubes);
    try {
        reader.Execute(model, doublePrecision);
    } catch (ReadError& failure) {
        CheckFailure(files, failure);
        Check(reader.FailurePlace() == failure.Place() && reader.FailureRow() == failure.Row(), "both tell one place");
        return failure.description() + '|' + failure.Place().path + '|' + std::to_string(failure.Place().offset) + '|' +
               std::to_string(failure.Row()) + '|' + std::to_string(cubes);
    }
    Check(reader.FailureRow() == 0 && !reader.FailurePlace().Known(), "success has no place");
    Check(cubes <= model.cubes.CubesCount() || cubesOnly, "no more cubes were traced than there are");
    fuzz::CheckModel(model, cubesOnly, doublePrecision);
    return support::ShowModel(model);
}

/// The first error of a check is the one that reading ends with, and there is none in a model that reads.
void CheckFindings(const Files& files) {
    const std::vector<Diagnostic> found = orvalo::CheckModel(files.Path(0));
    Check(found.size() < 100 * 1000, "findings are bounded");
    const auto first =
        std::find_if(found.begin(), found.end(), [](const Diagnostic& d) { return d.severity == Severity::Error; });
    Model model;
    try {
        ModelReader(files.Path(0), false).Execute(model, true);
        Check(first == found.end(), "a model that reads has no error");
    } catch (const ReadError& failure) {
        Check(first != found.end(), "a model that does not read has an error");
        Check(first->code == failure.code(), "the first error is the reader's");
        Check(first->place == failure.Place(), "the first error is where the reader's is");
        Check(failure.what().ends_with(first->message), "the first error says what the reader's does");
    }
    for (const Diagnostic& diagnostic : found) {
        Check(FindRule(diagnostic.rule.c_str()) != nullptr, "a finding names its rule");
        if (diagnostic.place.Known()) CheckPlace(files, diagnostic.place);
        for (const Note& note : diagnostic.notes) CheckPlace(files, note.place);
        for (const Fix& fix : diagnostic.fixes) CheckPlace(files, fix.place);
    }
}

}  // namespace

// Bounds what a generated table may take (libFuzzer itself takes 20 MiB), and makes the allocator fail as it does
// outside of the sanitizer.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=24";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Files files;
    files.Set({reinterpret_cast<const char*>(data), size});
    constexpr std::size_t tinySizes[] = {1, 2, 3, 7, 64};
    const std::size_t tiny = tinySizes[size % std::size(tinySizes)];
    // Where a block is not a few bytes only, threads have something to share.
    const unsigned int threads = tiny < 7 ? 1 : 3;
    constexpr std::size_t usual = Lexer::defaultBufferSize;
    Check(Read(files, false, true, usual) == Read(files, false, true, tiny, threads),
          "neither buffer nor threads matter");
    Check(Read(files, true, true, usual) == Read(files, true, true, tiny, threads),
          "neither buffer nor threads matter to cubes");
    Read(files, false, false, usual);
    CheckFindings(files);
    return 0;
}
