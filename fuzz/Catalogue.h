#pragma once

#include <string_view>

#include <Orvalo3DReader/Common/ReaderMessages.h>

namespace orvalo::fuzz {

/// Whether `text` is what filling the conversions (%d and %s) of `format` can give.
inline bool Matches(std::string_view format, std::string_view text) {
    for (; !format.empty(); format.remove_prefix(1)) {
        if (format.substr(0, 2) == "%s") {
            for (std::size_t taken = 0; taken <= text.size(); ++taken) {
                if (Matches(format.substr(2), text.substr(taken))) return true;
            }
            return false;
        }
        if (format.substr(0, 2) == "%d") {
            if (!text.empty() && text.front() == '-') text.remove_prefix(1);
            const std::size_t digits = text.find_first_not_of("0123456789");
            if (text.empty() || digits == 0) return false;
            text.remove_prefix(digits == std::string_view::npos ? text.size() : digits);
            format.remove_prefix(1);
            continue;
        }
        if (text.empty() || text.front() != format.front()) return false;
        text.remove_prefix(1);
    }
    return text.empty();
}

/// The catalogue entry of that code, or null.
inline const ExceptionMessage* FindMessage(int code) {
    using M = ReaderMessages;
    static const ExceptionMessage* const entries[] = {
        &M::OutOfMemory,
        &M::ErrorOpeningInputFile,
        &M::ErrorReadingInputFile,
        &M::LexInvalidChar,
        &M::LexInvalidCharKeyword,
        &M::LexInvalidCharNumber,
        &M::LexUnexpectedEOF,
        &M::LexUnexpectedEOL,
        &M::IncludeFNameMissing,
        &M::RecursvieInclude,
        &M::InvalidTableID,
        &M::InvalidIDProperty,
        &M::InvalidEnabledProperty,
        &M::CountPropertyMissing,
        &M::InvalidCountValue,
        &M::ObligatoryMissing,
        &M::NumericalValueExpected,
        &M::InvalidPropertyValue,
        &M::InvalidXCoordinate,
        &M::InvalidYCoordinate,
        &M::InvalidZCoordinate,
        &M::ShapePointSupported,
        &M::ActuatorDirExpected,
        &M::SensorOutputExpected,
        &M::DumpOutputExpected,
        &M::PiezoPointDuplicated,
        &M::PiezoDirectionSupp,
        &M::PiezoTableOrInterpolated,
        &M::NotEnoughPiezoPoints,
        &M::TooManyPiezoPoints,
        &M::SectionNameExpected,
        &M::SectionClosingExpected,
        &M::AnalysisNotDefinedFirst,
        &M::AnalysisAlreadyDefined,
        &M::AnalysisNotDefined,
        &M::MaterialsSectionExpected,
        &M::MaterialsAlreadyDefined,
        &M::MaterialsNotDefined,
        &M::CubesSectionExpected,
        &M::CubesAlreadyDefined,
        &M::CubesNotDefined,
        &M::ActuatorPiezoNotDefined,
        &M::SensorDumpNotDefined,
        &M::InvalidMaterialNumber,
        &M::MaterialIndexReused,
        &M::InvalidMaterialFormat,
        &M::MaterialNameExpected,
        &M::UnsuppMaterialFormat,
        &M::IncorrectMaterialIndex,
        &M::MaterialNotDefined,
        &M::InvalidCubesFormat,
        &M::UnsupportedInitValues,
        &M::NotEnoughCubes,
        &M::TooManyCubes,
        &M::NotEnoughTableElements,
        &M::TooManyTableElements,
        &M::ObligatoryPropNotDefined,
        &M::TableIDAlreadySpecified,
        &M::TableIDReused,
        &M::PiezoIDReused,
        &M::SensorIDReused,
        &M::DumpIDReused,
        &M::AppendNotSupportedMAT,
        &M::ActuatorInputExpected,
        &M::ActuatorMethodExpected,
        &M::ActuatorTypeExpected,
        &M::ActuatorWaveformExpected,
        &M::ActuatorEnvelopeExpected,
        &M::ActuatorProcesngExpected,
        &M::FileWriteModeExpected,
        &M::FileNotationExpected,
        &M::FileFormatExpected,
        &M::CannotResolvePath,
        &M::PiezoTableMissing,
        &M::TableMissing,
        &M::UnknownKeyword,
        &M::DiffSamplesCountInPiezo,
        &M::TemperatureValueExpected,
        &M::SetIDReused,
        &M::DampingAlreadyDefined,
        &M::DampingValueExpected,
        &M::ErrorOpeningResultsFile,
        &M::ErrorReadingResultsFile,
        &M::InvalidMATHeader,
        &M::MatrixExpected,
        &M::UnsupportedMatrixFormat,
        &M::UnsupportedDataFormat,
        &M::VarNameExpected,
        &M::VarNameTooLong,
        &M::InvalidDataBlockSize,
        &M::InvalidWholeBlockSize,
        &M::TooManyVariablesDefined,
        &M::DifferentRowCount,
        &M::InvalidRowNumber,
        &M::InvalidColNumber,
        &M::XOutOfRange,
        &M::YOutOfRange,
        &M::ZOutOfRange,
        &M::NoDataFound,
        &M::TooManyColumnsMat,
        &M::TooManyColumnsTxt,
        &M::NotEnoughColumnsTxt,
    };
    for (const ExceptionMessage* entry : entries) {
        if (entry->code == code) return entry;
    }
    return nullptr;
}

/// Whether a message, without the place put before it, is the catalogue's text for that code.
inline bool IsCatalogueText(int code, std::string_view text) {
    const ExceptionMessage* const entry = FindMessage(code);
    return entry != nullptr && Matches(entry->format, text);
}

}  // namespace orvalo::fuzz
