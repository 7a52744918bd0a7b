#include "Common/Raise.h"
#include "Reader/OutputSection.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

constexpr OutputProperty properties[] = {
    OutputProperty::End,      OutputProperty::Enabled,   OutputProperty::ID,       OutputProperty::Output,
    OutputProperty::FileName, OutputProperty::WriteMode, OutputProperty::Notation, OutputProperty::FileFormat,
};

constexpr const char* allCodes = "u0v0w0u1v1w1u2v2w2";

bool IsCode(const std::string& text) {
    return text.size() == 2 && text[0] >= 'u' && text[0] <= 'w' && text[1] >= '0' && text[1] <= '2';
}

/// Two characters per component; `all` replaces what was gathered before it.
std::string ReadCodes(ReaderCore& core) {
    std::string codes;
    for (;; core.NextToken()) {
        if (core.token.type != TokenType::Keyword) ORVALO_RAISE(OutputReader, ReaderMessages::DumpOutputExpected);
        if (core.token.text == "all") {
            codes = allCodes;
        } else if (IsCode(core.token.text)) {
            codes += core.token.text;
        } else {
            return codes;
        }
    }
}

constexpr OutputGrammar grammar = {
    "end.enabled.id.output.filename.writemode.notation.fileformat.", properties,
    Bit(OutputProperty::ID) | Bit(OutputProperty::Output) | Bit(OutputProperty::FileName), ReadCodes};

}  // namespace

bool ReadDumpSection(ReaderCore& core, Dump& dump) {
    return ReadOutputSection(core, grammar, dump.shared, dump.output, dump.file);
}

}  // namespace orvalo
