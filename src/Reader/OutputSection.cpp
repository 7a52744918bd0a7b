#include "Reader/OutputSection.h"

#include "Common/Raise.h"
#include "Reader/PointShape.h"

namespace orvalo {

namespace {

enum WriteMode { Overwrite, Create, Append, writeModes };
constexpr int matFile = 1;

int ReadWriteMode(const ReaderCore& core) {
    const unsigned int word = core.MatchKeyword("create.append.overwrite.", ReaderMessages::FileWriteModeExpected);
    return static_cast<int>(word + Create) % writeModes;
}

void ReadFileProperty(const ReaderCore& core, OutputProperty property, FileProperties& file) {
    switch (property) {
        case OutputProperty::FileName:
            file.fileName = core.token.Text();
            return;
        case OutputProperty::WriteMode:
            file.writeMode = ReadWriteMode(core);
            return;
        case OutputProperty::Notation:
            file.notation =
                static_cast<int>(core.MatchKeyword("decimal.scientific.", ReaderMessages::FileNotationExpected));
            return;
        default:
            file.fileFormat = static_cast<int>(core.MatchKeyword("txt.mat.", ReaderMessages::FileFormatExpected));
            return;
    }
}

}  // namespace

bool ReadOutputSection(ReaderCore& core, const OutputGrammar& grammar, SharedProperties& shared, std::string& output,
                       FileProperties& file) {
    unsigned int given = 0;
    core.NextToken();
    for (;;) {
        const OutputProperty property =
            grammar.properties[core.MatchKeyword(grammar.keywords, ReaderMessages::UnknownKeyword)];
        if (property == OutputProperty::End) break;
        core.NextValue();
        switch (property) {
            case OutputProperty::Enabled:
                if (core.ReadEnabled()) break;
                core.NextToken();
                core.SkipToEnd();
                return false;
            case OutputProperty::ID:
                shared.id = core.ReadID();
                break;
            case OutputProperty::Shape:
                CheckPointShape(core);
                break;
            case OutputProperty::Position:
                shared.position = core.ReadCoordinates();
                break;
            case OutputProperty::Output:
                output = grammar.readCodes(core);
                break;
            default:
                ReadFileProperty(core, property, file);
                break;
        }
        given |= Bit(property);
        if (property != OutputProperty::Output) core.NextToken();
    }
    if ((given & grammar.obligatory) != grammar.obligatory) {
        ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    if (file.fileFormat == matFile && file.writeMode == Append) {
        ORVALO_RAISE(SectionReader, ReaderMessages::AppendNotSupportedMAT);
    }
    return true;
}

}  // namespace orvalo
