#include "Reader/OutputSection.h"
#include "Reader/Sections.h"

namespace orvalo {

namespace {

static_assert(HasWords(dumpComponents));

/// `all` replaces what was gathered before it.
void ReadComponents(ReaderCore& core, Dump& dump) {
    dump.output.clear();
    for (;; core.NextToken()) {
        const auto row = core.FindWord(dumpComponents, module::OutputReader, ReaderMessages::DumpOutputExpected);
        if (!row) return;
        const ComponentWord& component = dumpComponents[*row];
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
