#pragma once

#include <string_view>

/// The words by which the input file calls what the model holds as numbers.
namespace orvalo {

struct CodeWord {
    std::string_view word;
    int code;
};

inline constexpr CodeWord actuatorInputs[] = {{"definition", 0}, {"wave", 1}};
inline constexpr CodeWord excitationMethods[] = {{"force", 1}, {"absolute", 2}};
inline constexpr CodeWord actuatorTypes[] = {{"fullpulse", 1}, {"halfpulse", 2}, {"continuouswave", 3}};
inline constexpr CodeWord actuatorWaveforms[] = {{"square", 1}, {"sine", 2}, {"gaussian", 3}};
inline constexpr CodeWord actuatorEnvelopes[] = {{"none", 0}, {"hannwindow", 1}};
inline constexpr CodeWord actuatorProcessings[] = {{"none", 0}, {"invert", 1}};
inline constexpr CodeWord fileWriteModes[] = {{"create", 1}, {"append", 2}, {"overwrite", 0}};
inline constexpr CodeWord fileNotations[] = {{"decimal", 0}, {"scientific", 1}};
inline constexpr CodeWord fileFormats[] = {{"txt", 0}, {"mat", 1}};

/// What an output records, as the model holds it.
struct ComponentWord {
    std::string_view word;
    std::string_view codes;
};

/// Displacements and their magnitude.
inline constexpr ComponentWord sensorComponents[] = {{"u", "u"}, {"v", "v"}, {"w", "w"}, {"m", "m"}};
/// The last one is all others.
inline constexpr ComponentWord dumpComponents[] = {
    {"u0", "u0"}, {"v0", "v0"}, {"w0", "w0"}, {"u1", "u1"}, {"v1", "v1"},
    {"w1", "w1"}, {"u2", "u2"}, {"v2", "v2"}, {"w2", "w2"}, {"all", "u0v0w0u1v1w1u2v2w2"},
};

}  // namespace orvalo
