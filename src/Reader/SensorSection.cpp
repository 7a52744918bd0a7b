#include "Common/Raise.h"
#include "Reader/OutputSection.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr OutputProperty properties[] = {
    OutputProperty::End,      OutputProperty::Enabled,    OutputProperty::ID,       OutputProperty::Shape,
    OutputProperty::Position, OutputProperty::Output,     OutputProperty::FileName, OutputProperty::WriteMode,
    OutputProperty::Notation, OutputProperty::FileFormat,
};

/// One letter per component: displacements u, v, w and their magnitude m.
std::string ReadCodes(ReaderCore& core) {
    std::string codes;
    for (;; core.NextToken()) {
        if (core.token.type != TokenType::Keyword) ORVALO_RAISE(OutputReader, ReaderMessages::SensorOutputExpected);
        const std::string& code = core.token.text;
        if (code != "u" && code != "v" && code != "w" && code != "m") return codes;
        codes += code;
    }
}

constexpr OutputGrammar grammar = {
    "end.enabled.id.shape.position.output.filename.writemode.notation.fileformat.", properties,
    Bit(OutputProperty::ID) | Bit(OutputProperty::Shape) | Bit(OutputProperty::Position) | Bit(OutputProperty::Output) |
        Bit(OutputProperty::FileName),
    ReadCodes};

}  // namespace

bool ReadSensorSection(ReaderCore& core, Sensor& sensor) {
    return ReadOutputSection(core, grammar, sensor.shared, sensor.output, sensor.file);
}

}  // namespace orvalo
