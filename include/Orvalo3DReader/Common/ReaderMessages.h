#pragma once

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The catalogue of everything that the library can report: one constant per message, with its code and its
/// printf-style text. Codes 100 to 102 are general, 103 to 183 belong to model files, 200 to 211 to results
/// files and 300 to 308 to queries of results. Codes and texts are stable, spellings included: clients match them.
class ORVALO3DREADER_EXPORT ReaderMessages {
public:
    ReaderMessages() = delete;

    static const ExceptionMessage FileLineColumn;
    static const ExceptionMessage SourceCodePlace;
    static const ExceptionMessage OutOfMemory;
    static const ExceptionMessage ErrorOpeningInputFile;
    static const ExceptionMessage ErrorReadingInputFile;
    static const ExceptionMessage LexInvalidChar;
    static const ExceptionMessage LexInvalidCharKeyword;
    static const ExceptionMessage LexInvalidCharNumber;
    static const ExceptionMessage LexUnexpectedEOF;
    static const ExceptionMessage LexUnexpectedEOL;
    static const ExceptionMessage IncludeFNameMissing;
    static const ExceptionMessage RecursvieInclude;
    static const ExceptionMessage InvalidTableID;
    static const ExceptionMessage InvalidIDProperty;
    static const ExceptionMessage InvalidEnabledProperty;
    static const ExceptionMessage CountPropertyMissing;
    static const ExceptionMessage InvalidCountValue;
    static const ExceptionMessage ObligatoryMissing;
    static const ExceptionMessage NumericalValueExpected;
    static const ExceptionMessage InvalidPropertyValue;
    static const ExceptionMessage InvalidXCoordinate;
    static const ExceptionMessage InvalidYCoordinate;
    static const ExceptionMessage InvalidZCoordinate;
    static const ExceptionMessage ShapePointSupported;
    static const ExceptionMessage ActuatorDirExpected;
    static const ExceptionMessage SensorOutputExpected;
    static const ExceptionMessage DumpOutputExpected;
    static const ExceptionMessage PiezoPointDuplicated;
    static const ExceptionMessage PiezoDirectionSupp;
    static const ExceptionMessage PiezoTableOrInterpolated;
    static const ExceptionMessage NotEnoughPiezoPoints;
    static const ExceptionMessage TooManyPiezoPoints;
    static const ExceptionMessage SectionNameExpected;
    static const ExceptionMessage SectionClosingExpected;
    static const ExceptionMessage AnalysisNotDefinedFirst;
    static const ExceptionMessage AnalysisAlreadyDefined;
    static const ExceptionMessage AnalysisNotDefined;
    static const ExceptionMessage MaterialsSectionExpected;
    static const ExceptionMessage MaterialsAlreadyDefined;
    static const ExceptionMessage MaterialsNotDefined;
    static const ExceptionMessage CubesSectionExpected;
    static const ExceptionMessage CubesAlreadyDefined;
    static const ExceptionMessage CubesNotDefined;
    static const ExceptionMessage ActuatorPiezoNotDefined;
    static const ExceptionMessage SensorDumpNotDefined;
    static const ExceptionMessage InvalidMaterialNumber;
    static const ExceptionMessage MaterialIndexReused;
    static const ExceptionMessage InvalidMaterialFormat;
    static const ExceptionMessage MaterialNameExpected;
    static const ExceptionMessage UnsuppMaterialFormat;
    static const ExceptionMessage IncorrectMaterialIndex;
    static const ExceptionMessage MaterialNotDefined;
    static const ExceptionMessage InvalidCubesFormat;
    static const ExceptionMessage UnsupportedInitValues;
    static const ExceptionMessage NotEnoughCubes;
    static const ExceptionMessage TooManyCubes;
    static const ExceptionMessage NotEnoughTableElements;
    static const ExceptionMessage TooManyTableElements;
    static const ExceptionMessage ObligatoryPropNotDefined;
    static const ExceptionMessage TableIDAlreadySpecified;
    static const ExceptionMessage TableIDReused;
    static const ExceptionMessage PiezoIDReused;
    static const ExceptionMessage SensorIDReused;
    static const ExceptionMessage DumpIDReused;
    static const ExceptionMessage AppendNotSupportedMAT;
    static const ExceptionMessage ActuatorInputExpected;
    static const ExceptionMessage ActuatorMethodExpected;
    static const ExceptionMessage ActuatorTypeExpected;
    static const ExceptionMessage ActuatorWaveformExpected;
    static const ExceptionMessage ActuatorEnvelopeExpected;
    static const ExceptionMessage ActuatorProcesngExpected;
    static const ExceptionMessage FileWriteModeExpected;
    static const ExceptionMessage FileNotationExpected;
    static const ExceptionMessage FileFormatExpected;
    static const ExceptionMessage CannotResolvePath;
    static const ExceptionMessage PiezoTableMissing;
    static const ExceptionMessage TableMissing;
    static const ExceptionMessage UnknownKeyword;
    static const ExceptionMessage DiffSamplesCountInPiezo;
    static const ExceptionMessage TemperatureValueExpected;
    static const ExceptionMessage SetIDReused;
    static const ExceptionMessage DampingAlreadyDefined;
    static const ExceptionMessage DampingValueExpected;
    static const ExceptionMessage ErrorOpeningResultsFile;
    static const ExceptionMessage ErrorReadingResultsFile;
    static const ExceptionMessage InvalidMATHeader;
    static const ExceptionMessage MatrixExpected;
    static const ExceptionMessage UnsupportedMatrixFormat;
    static const ExceptionMessage UnsupportedDataFormat;
    static const ExceptionMessage VarNameExpected;
    static const ExceptionMessage VarNameTooLong;
    static const ExceptionMessage InvalidDataBlockSize;
    static const ExceptionMessage InvalidWholeBlockSize;
    static const ExceptionMessage TooManyVariablesDefined;
    static const ExceptionMessage DifferentRowCount;
    static const ExceptionMessage InvalidRowNumber;
    static const ExceptionMessage InvalidColNumber;
    static const ExceptionMessage XOutOfRange;
    static const ExceptionMessage YOutOfRange;
    static const ExceptionMessage ZOutOfRange;
    static const ExceptionMessage NoDataFound;
    static const ExceptionMessage TooManyColumnsMat;
    static const ExceptionMessage TooManyColumnsTxt;
    static const ExceptionMessage NotEnoughColumnsTxt;
};

}  // namespace orvalo
