#pragma once

#include <cstdint>
#include <string>

#include <Orvalo3DReader/Model/FileProperties.h>
#include <Orvalo3DReader/Model/SharedProperties.h>

#include "Reader/ReaderCore.h"

/// What the SENSOR and DUMP sections share: all but their keyword lists and their component codes.
namespace orvalo {

enum class OutputProperty : std::uint8_t {
    End,
    Enabled,
    ID,
    Shape,
    Position,
    Output,
    FileName,
    WriteMode,
    Notation,
    FileFormat,
};

struct OutputGrammar {
    const char* keywords;
    /// What each word of `keywords` stands for, in the order of the list.
    const OutputProperty* properties;
    /// The obligatory ones, a bit for each value of OutputProperty.
    unsigned int obligatory;
    /// Reads component codes from the current token on; the first keyword that is none ends them and stays current.
    std::string (*readCodes)(ReaderCore& core);
};

constexpr unsigned int Bit(OutputProperty property) {
    return 1U << static_cast<unsigned int>(property);
}

/// Reads a section into the parts of a Sensor or Dump; returns whether it is enabled.
bool ReadOutputSection(ReaderCore& core, const OutputGrammar& grammar, SharedProperties& shared, std::string& output,
                       FileProperties& file);

}  // namespace orvalo
