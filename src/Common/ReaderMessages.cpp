#include <algorithm>
#include <array>

#include <Orvalo3DReader/Common/ReaderMessages.h>

#include "Common/MessageCatalogue.h"

namespace orvalo {

namespace {

using M = ReaderMessages;

// By ascending codes. To take the addresses makes each of them a symbol of the library too, where programs find them
// that were compiled when the constants were defined here.
constexpr std::array catalogue = {
    &M::FileLineColumn,
    &M::SourceCodePlace,
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

constexpr bool NotBefore(const ExceptionMessage* one, const ExceptionMessage* next) {
    return one->code >= next->code;
}
static_assert(std::adjacent_find(catalogue.begin(), catalogue.end(), NotBefore) == catalogue.end(),
              "codes ascend, so that none is used twice");

/// Whether there is a message of that code from `first` on and before `end`.
bool IsFrom(const ExceptionMessage& first, const ExceptionMessage& end, int code) {
    return code >= first.code && code < end.code && FindMessage(code) != nullptr;
}

}  // namespace

const ExceptionMessage* FindMessage(int code) {
    const auto* const found =
        std::lower_bound(catalogue.begin(), catalogue.end(), code,
                         [](const ExceptionMessage* message, int sought) { return message->code < sought; });
    return found != catalogue.end() && (*found)->code == code ? *found : nullptr;
}

bool MayEndModel(int code) {
    return code == M::OutOfMemory.code || IsFrom(M::ErrorOpeningInputFile, M::ErrorOpeningResultsFile, code);
}

bool MayEndResults(int code) {
    return code == M::OutOfMemory.code || IsFrom(M::ErrorOpeningResultsFile, M::InvalidRowNumber, code) ||
           (code >= M::TooManyColumnsMat.code && FindMessage(code) != nullptr);
}

bool MayEndQuery(int code) {
    return IsFrom(M::InvalidRowNumber, M::TooManyColumnsMat, code);
}

}  // namespace orvalo
