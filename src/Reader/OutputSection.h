#pragma once

#include <map>
#include <string>
#include <utility>

#include "Common/Raise.h"
#include "Model/CodeWords.h"
#include "Reader/Properties.h"

/// What the grammars of SENSOR and DUMP share. `Output` is Sensor or Dump.
namespace orvalo {

template <class Output>
inline constexpr Property<Output> idProperty = {
    "id", "ID", Takes::Value, always, [](ReaderCore& core, Output& output) { output.shared.id = core.ReadID(); }};

template <class Output>
inline constexpr Property<Output> fileNameProperty = {
    "filename", "FileName", Takes::Value, always,
    [](ReaderCore& core, Output& output) { output.file.fileName = core.token.Text(); }};

template <class Output>
inline constexpr Property<Output> writeModeProperty = {
    "writemode", "WriteMode", Takes::Value, optional, [](ReaderCore& core, Output& output) {
        output.file.writeMode = core.ReadCode(fileWriteModes, ReaderMessages::FileWriteModeExpected);
    }};

template <class Output>
inline constexpr Property<Output> notationProperty = {
    "notation", "Notation", Takes::Value, optional, [](ReaderCore& core, Output& output) {
        output.file.notation = core.ReadCode(fileNotations, ReaderMessages::FileNotationExpected);
    }};

template <class Output>
inline constexpr Property<Output> fileFormatProperty = {
    "fileformat", "FileFormat", Takes::Value, optional, [](ReaderCore& core, Output& output) {
        output.file.fileFormat = core.ReadCode(fileFormats, ReaderMessages::FileFormatExpected);
    }};

/// Reads an output and files it under its ID, which must be new.
template <class Output, std::size_t n>
void ReadOutput(ReaderCore& core, const Property<Output> (&properties)[n], std::map<int, Output>& outputs,
                const ExceptionMessage& reused) {
    constexpr int matFile = 1;
    constexpr int append = 2;
    Output output;
    PropertySet given;
    if (!ReadProperties(core, properties, output, given)) return core.SkipToEnd();
    if (given.Lacks(core, properties, always)) {
        ORVALO_RAISE(SectionReader, ReaderMessages::ObligatoryPropNotDefined);
    }
    core.Attempt([&] {
        if (output.file.fileFormat == matFile && output.file.writeMode == append) {
            ORVALO_RAISE(SectionReader, ReaderMessages::AppendNotSupportedMAT);
        }
    });
    const int id = output.shared.id;
    if (!outputs.emplace(id, std::move(output)).second) ORVALO_RAISE(Reader, reused, id);
}

}  // namespace orvalo
