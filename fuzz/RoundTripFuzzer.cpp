#include <cstdint>
#include <cstdio>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>

#include "Check.h"
#include "Support/RoundTrip.h"

/// Writes what can be read of an input, as a model, as results in text, or as those of a MAT-file after its header, and
/// reads it back.
namespace {

using namespace orvalo;

void CheckProblem(const std::string& problem) {
    if (!problem.empty()) std::fputs(problem.c_str(), stderr);
    fuzz::Check(problem.empty(), "what was read is written and read back equal");
}

/// Made by the wrong numbers, a material may be of infinities and zeros that no numbers are found for.
bool IsAbsurd(const Model& model) {
    for (int i = 1; i < static_cast<int>(model.materials.Count()); ++i) {
        const Material& m = model.materials[i];
        for (const double number : {m.density, m.vp, m.vs, m.mu}) {
            if (!m.temperatureDependent && !(number > 1e-60 && number < 1e60)) return true;
        }
    }
    return false;
}

void TryModel(const std::string& path) {
    // A list may declare more rows than anybody walks.
    constexpr std::size_t mostCubes = 100'000;
    ReadOptions options;
    try {
        for (const bool doublePrecision : {true, false}) {
            options.doublePrecision = doublePrecision;
            const Model model = ReadModel(path, options);
            if (model.cubes.CubesCount() > mostCubes || model.cubes.DampingCubesCount() > mostCubes) return;
            if (IsAbsurd(model)) {
                try {
                    WriteModel(model, support::ScratchDirectory() + "/absurd", support::Overwriting());
                } catch (const WriteError&) {
                    return;
                }
            }
            CheckProblem(support::RoundTripProblem(model, doublePrecision));
        }
    } catch (const ReadError&) {
    }
}

void TryResults(const std::string& path) {
    std::unique_ptr<Results> results;
    try {
        results = ReadResults(path);
    } catch (const Exception&) {
        return;
    }
    CheckProblem(support::RoundTripProblem(*results));
}

}  // namespace

extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:max_allocation_size_mb=24";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    // A byte of value 255 parts the files of an input for the model fuzzer.
    TryModel(support::WriteFile("input", input.substr(0, input.find('\xFF'))));
    TryResults(support::WriteFile("input", input));
    std::string header = "MATLAB 5.0 MAT-file";
    header.resize(124);
    TryResults(support::WriteFile("input", header + std::string("\0\1IM", 4) + input));
    return 0;
}
