#include "Common/Raise.h"
#include "Reader/PointShape.h"
#include "Reader/Sections.h"
#include "Reader/StartSteps.h"

namespace orvalo {

namespace {

constexpr const char* keywords =
    "end.enabled.shape.position.input.start.table.type.method.direction.waveform.envelope.frequency.duration.phase."
    "amplitude.factoru.factorv.factorw.processing.";
enum Keyword : unsigned int {
    End,
    Enabled,
    Shape,
    Position,
    Input,
    Start,
    TableID,
    Type,
    Method,
    Direction,
    Waveform,
    Envelope,
    Frequency,
    Duration,
    Phase,
    Amplitude,
    FactorU,
    FactorV,
    FactorW,
    Processing,
};

constexpr int inputWave = 1;

/// A set of properties, one bit per keyword.
using Properties = std::uint32_t;

constexpr Properties Bit(unsigned int keyword) {
    return Properties{1} << keyword;
}

constexpr Properties obligatoryAlways = Bit(Shape) | Bit(Position) | Bit(Input) | Bit(Method);
constexpr Properties obligatoryForWave = obligatoryAlways | Bit(TableID);
constexpr Properties obligatoryForDefinition =
    obligatoryAlways | Bit(Type) | Bit(Waveform) | Bit(Envelope) | Bit(Frequency) | Bit(Duration) | Bit(Phase);

/// Reads the component names from the current token on; the first keyword that is none ends them and stays current.
void ReadDirection(ReaderCore& core, Actuator& actuator) {
    actuator.directionU = actuator.directionV = actuator.directionW = false;
    for (;; core.NextToken()) {
        if (core.token.type != TokenType::Keyword) ORVALO_RAISE(ActuatorReader, ReaderMessages::ActuatorDirExpected);
        const bool all = core.token.text == "all";
        const bool u = all || core.token.text == "u";
        const bool v = all || core.token.text == "v";
        const bool w = all || core.token.text == "w";
        if (!u && !v && !w) return;
        actuator.directionU |= u;
        actuator.directionV |= v;
        actuator.directionW |= w;
    }
}

int ReadTableID(const ReaderCore& core, Model& model, bool given) {
    if (given) ORVALO_RAISE(SectionReader, ReaderMessages::TableIDAlreadySpecified);
    const int id = core.ReadID();
    model.requiredTables[id] = 0;
    return id;
}

/// A word of `list` as its place in the list.
int ReadCode(const ReaderCore& core, const char* list, const ExceptionMessage& message) {
    return static_cast<int>(core.MatchKeyword(list, message));
}

void ReadProperty(ReaderCore& core, unsigned int keyword, Properties given, Actuator& actuator, Model& model) {
    Actuator::Definition& definition = actuator.definition;
    switch (keyword) {
        case Shape:
            return CheckPointShape(core);
        case Position:
            actuator.shared.position = core.ReadCoordinates();
            return;
        case Input:
            actuator.input = ReadCode(core, "definition.wave.", ReaderMessages::ActuatorInputExpected);
            return;
        case Start:
            actuator.start = ReadStartSteps(core, model.timeStep);
            return;
        case TableID:
            actuator.tableId = ReadTableID(core, model, (given & Bit(TableID)) != 0);
            return;
        case Type:
            definition.type =
                1 + ReadCode(core, "fullpulse.halfpulse.continuouswave.", ReaderMessages::ActuatorTypeExpected);
            return;
        case Method:
            actuator.method = 1 + ReadCode(core, "force.absolute.", ReaderMessages::ActuatorMethodExpected);
            return;
        case Direction:
            return ReadDirection(core, actuator);
        case Waveform:
            definition.waveform = 1 + ReadCode(core, "square.sine.gaussian.", ReaderMessages::ActuatorWaveformExpected);
            return;
        case Envelope:
            definition.envelope = ReadCode(core, "none.hannwindow.", ReaderMessages::ActuatorEnvelopeExpected);
            return;
        case Frequency:
            definition.frequency = core.ExpectAtLeast(0.0);
            return;
        case Duration:
            definition.duration = core.ExpectGreaterThan(0.0);
            return;
        case Phase:
            definition.phase = core.ExpectNumber();
            return;
        case Amplitude:
            actuator.amplitude = core.ExpectNumber();
            return;
        case FactorU:
            actuator.factorU = core.ExpectNumber();
            return;
        case FactorV:
            actuator.factorV = core.ExpectNumber();
            return;
        case FactorW:
            actuator.factorW = core.ExpectNumber();
            return;
        default:
            actuator.invert = ReadCode(core, "none.invert.", ReaderMessages::ActuatorProcesngExpected) == 1;
            return;
    }
}

}  // namespace

bool ReadActuatorSection(ReaderCore& core, Actuator& actuator, Model& model) {
    Properties given = 0;
    core.NextToken();
    for (;;) {
        const unsigned int keyword = core.MatchKeyword(keywords, ReaderMessages::UnknownKeyword);
        if (keyword == End) break;
        core.NextValue();
        if (keyword == Enabled) {
            if (!core.ReadEnabled()) {
                core.NextToken();
                core.SkipToEnd();
                return false;
            }
        } else {
            ReadProperty(core, keyword, given, actuator, model);
        }
        given |= Bit(keyword);
        if (keyword != Direction) core.NextToken();
    }
    const Properties obligatory = actuator.input == inputWave ? obligatoryForWave : obligatoryForDefinition;
    if ((given & obligatory) != obligatory) ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    return true;
}

}  // namespace orvalo
