#pragma once

#include <string>

#include <Orvalo3DReader/Model/Actuator.h>
#include <Orvalo3DReader/Model/FileProperties.h>

/// The words of the input file for what the model holds as numbers. An unset number has no word.
inline std::string MethodName(int method) {
    constexpr const char* names[] = {"", "force", "absolute"};
    return names[method];
}

inline std::string TypeName(int type) {
    constexpr const char* names[] = {"", "fullpulse", "halfpulse", "continuouswave"};
    return names[type];
}

inline std::string WaveformName(int waveform) {
    constexpr const char* names[] = {"", "square", "sine", "gaussian"};
    return names[waveform];
}

inline std::string EnvelopeName(int envelope) {
    return envelope == orvalo::ActuatorEnvelopeHannWindow ? "hannwindow" : "none";
}

inline std::string WriteModeName(int writeMode) {
    constexpr const char* names[] = {"overwrite", "create", "append"};
    return names[writeMode];
}

inline std::string FileFormatName(int fileFormat) {
    return fileFormat == orvalo::FileFormatMat ? "mat" : "txt";
}

/// Such as "UW".
inline std::string DirectionLetters(const orvalo::Actuator& actuator) {
    return std::string(actuator.directionU ? "U" : "") + (actuator.directionV ? "V" : "") +
           (actuator.directionW ? "W" : "");
}
