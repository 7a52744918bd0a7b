#include "Reader/OutputSection.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

struct Component {
    std::string_view word;
    std::string_view codes;
};
constexpr Component components[] = {
    {"u0", "u0"}, {"v0", "v0"}, {"w0", "w0"}, {"u1", "u1"}, {"v1", "v1"},
    {"w1", "w1"}, {"u2", "u2"}, {"v2", "v2"}, {"w2", "w2"}, {"all", "u0v0w0u1v1w1u2v2w2"},
};
static_assert(HasWords(components));

/// `all` replaces what was gathered before it.
void ReadComponents(ReaderCore& core, Dump& dump) {
    dump.output.clear();
    for (;; core.NextToken()) {
        const auto row = core.FindWord(components, module::OutputReader, ReaderMessages::DumpOutputExpected);
        if (!row) return;
        const Component& component = components[*row];
        if (component.word == "all") dump.output.clear();
        dump.output += component.codes;
    }
}

constexpr Property<Dump> properties[] = {
    {"end", "END", Takes::Nothing},
    {"enabled", "Enabled", Takes::Switch},
    idProperty<Dump>,
    {"output", "Output", Takes::Words, always, ReadComponents},
    fileNameProperty<Dump>,
    writeModeProperty<Dump>,
    notationProperty<Dump>,
    fileFormatProperty<Dump>,
};
static_assert(IsComplete(properties));

}  // namespace

WordList DumpWords() {
    return properties;
}

void ReadDumpSection(ReaderCore& core, const ModelReading& reading) {
    ReadOutput(core, properties, reading.model.dumps, ReaderMessages::DumpIDReused);
}

}  // namespace orvalo
