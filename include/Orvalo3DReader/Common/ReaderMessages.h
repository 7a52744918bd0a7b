#pragma once

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The catalogue of everything that the library can report: one constant per message, with its code and its
/// printf-style text. Codes and texts are stable, spellings included: clients match them, and may use the codes as the
/// cases of a switch.
class ORVALO3DREADER_EXPORT ReaderMessages {
public:
    ReaderMessages() = delete;

    /// General: the place put before a message, the description of an exception, and what any read may end in.
    /// @{
    static constexpr ExceptionMessage FileLineColumn{100, "Error in file \"%s\", line %d, column %d:\n%s"};
    static constexpr ExceptionMessage SourceCodePlace{101, "%s\n\n[Exception thrown in source file '%s', line %d]"};
    static constexpr ExceptionMessage OutOfMemory{102, "Out of memory."};
    /// @}

    /// Model files.
    /// @{
    static constexpr ExceptionMessage ErrorOpeningInputFile{103, "Unable to open '%s' input file."};
    static constexpr ExceptionMessage ErrorReadingInputFile{104, "Unable to read '%s' input file."};
    static constexpr ExceptionMessage LexInvalidChar{105, "Invalid character."};
    static constexpr ExceptionMessage LexInvalidCharKeyword{106, "Invalid character (inside keyword)."};
    static constexpr ExceptionMessage LexInvalidCharNumber{107, "Invalid character (inside number)."};
    static constexpr ExceptionMessage LexUnexpectedEOF{108, "Unexpected End-Of-File."};
    static constexpr ExceptionMessage LexUnexpectedEOL{109, "Unexpected End-Of-Line."};
    static constexpr ExceptionMessage IncludeFNameMissing{110, "Include filename missing"};
    static constexpr ExceptionMessage RecursvieInclude{111, "Recursive include found."};
    static constexpr ExceptionMessage InvalidTableID{112, "Invalid table ID."};
    static constexpr ExceptionMessage InvalidIDProperty{113, "Invalid 'ID' property value, use natural number."};
    static constexpr ExceptionMessage InvalidEnabledProperty{114,
                                                             "Invalid 'Enabled' property value, 0 or 1 is accepted."};
    static constexpr ExceptionMessage CountPropertyMissing{115, "'Count' property not defined."};
    static constexpr ExceptionMessage InvalidCountValue{116, "Invalid 'Count' property value"};
    static constexpr ExceptionMessage ObligatoryMissing{117, "Obligatory property '%s' not defined."};
    static constexpr ExceptionMessage NumericalValueExpected{118, "Numerical property value expected."};
    static constexpr ExceptionMessage InvalidPropertyValue{119, "Invalid proverty value provided."};
    static constexpr ExceptionMessage InvalidXCoordinate{120, "Invalid X coordinate value (or out of range)."};
    static constexpr ExceptionMessage InvalidYCoordinate{121, "Invalid Y coordinate value (or out of range)."};
    static constexpr ExceptionMessage InvalidZCoordinate{122, "Invalid Z coordinate value (or out of range)."};
    static constexpr ExceptionMessage ShapePointSupported{123, "Currently only the 'point' is supported."};
    static constexpr ExceptionMessage ActuatorDirExpected{124, "'U', 'V', 'W' or 'All' expected."};
    static constexpr ExceptionMessage SensorOutputExpected{125, "'U', 'V', 'W' or 'M' expected."};
    static constexpr ExceptionMessage DumpOutputExpected{
        126, "'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected."};
    static constexpr ExceptionMessage PiezoPointDuplicated{127, "Piezo point position duplicated (%d,%d)."};
    static constexpr ExceptionMessage PiezoDirectionSupp{128, "Piezo direction not supported."};
    static constexpr ExceptionMessage PiezoTableOrInterpolated{129, "'t' or 'i' expected."};
    static constexpr ExceptionMessage NotEnoughPiezoPoints{130, "Not enough piezo points defined (%d missing)"};
    static constexpr ExceptionMessage TooManyPiezoPoints{131, "Too many piezo points provided."};
    static constexpr ExceptionMessage SectionNameExpected{132, "Section name expected."};
    static constexpr ExceptionMessage SectionClosingExpected{133, "END keyword (section closing) expected."};
    static constexpr ExceptionMessage AnalysisNotDefinedFirst{134, "ANALYSIS section must be defined first."};
    static constexpr ExceptionMessage AnalysisAlreadyDefined{135, "ANALYSIS section already defined."};
    static constexpr ExceptionMessage AnalysisNotDefined{136, "ANALYSIS section not defined."};
    static constexpr ExceptionMessage MaterialsSectionExpected{137, "MATERIALS section expected here."};
    static constexpr ExceptionMessage MaterialsAlreadyDefined{138, "MATERIALS section already defined."};
    static constexpr ExceptionMessage MaterialsNotDefined{139, "MATERIALS section not defined."};
    static constexpr ExceptionMessage CubesSectionExpected{140, "CUBES section expected here."};
    static constexpr ExceptionMessage CubesAlreadyDefined{141, "CUBES section already defined."};
    static constexpr ExceptionMessage CubesNotDefined{142, "CUBES section not defined."};
    static constexpr ExceptionMessage ActuatorPiezoNotDefined{143,
                                                              "At least one ACTUATOR or one PIEZO must be defined."};
    static constexpr ExceptionMessage SensorDumpNotDefined{144, "At least one SENSOR or one DUMP must be defined."};
    static constexpr ExceptionMessage InvalidMaterialNumber{
        145, "Natural number of [1..255] range expected as material index."};
    static constexpr ExceptionMessage MaterialIndexReused{146, "Specified material index reused."};
    static constexpr ExceptionMessage InvalidMaterialFormat{
        147, "Natural number of [0..3] range expected as material definition format."};
    static constexpr ExceptionMessage MaterialNameExpected{148, "Material name expected."};
    static constexpr ExceptionMessage UnsuppMaterialFormat{
        149, "Selected material definition format is not handled by this version of library."};
    static constexpr ExceptionMessage IncorrectMaterialIndex{150, "Incorrect material index provided."};
    static constexpr ExceptionMessage MaterialNotDefined{151, "Material no.%d is not defined."};
    static constexpr ExceptionMessage InvalidCubesFormat{152, "Invalid 'Format' property value, 0 or 1 is allowed."};
    static constexpr ExceptionMessage UnsupportedInitValues{
        154, "Init values are not handled by current version of the library."};
    static constexpr ExceptionMessage NotEnoughCubes{155, "Not enough cubes defined (%d missing)"};
    static constexpr ExceptionMessage TooManyCubes{156, "Too many cubes provided."};
    static constexpr ExceptionMessage NotEnoughTableElements{157, "Not enough table elements defined (%d missing)"};
    static constexpr ExceptionMessage TooManyTableElements{158, "Too many table elements provided."};
    static constexpr ExceptionMessage ObligatoryPropNotDefined{159,
                                                               "One or more obligatory properties were not defined."};
    static constexpr ExceptionMessage TableIDAlreadySpecified{160, "Table ID already specified in current section."};
    static constexpr ExceptionMessage TableIDReused{161, "Table ID = %d reused."};
    static constexpr ExceptionMessage PiezoIDReused{162, "Piezo ID = %d reused."};
    static constexpr ExceptionMessage SensorIDReused{163, "Sensor ID = %d reused."};
    static constexpr ExceptionMessage DumpIDReused{164, "Dump ID = %d reused."};
    static constexpr ExceptionMessage AppendNotSupportedMAT{165, "Append mode not allowed while creating MAT file."};
    static constexpr ExceptionMessage ActuatorInputExpected{166, "'Definition' or 'Wave' expected."};
    static constexpr ExceptionMessage ActuatorMethodExpected{167, "'Force' or 'Absolute' expected."};
    static constexpr ExceptionMessage ActuatorTypeExpected{168,
                                                           "'FullPulse', 'HalfPulse' or 'ContinuousWave' expected."};
    static constexpr ExceptionMessage ActuatorWaveformExpected{169, "'Square', 'Sine' or 'Gaussian' expected."};
    static constexpr ExceptionMessage ActuatorEnvelopeExpected{170, "'None' or 'HannWindow' expected."};
    static constexpr ExceptionMessage ActuatorProcesngExpected{171, "'None' or 'Invert' expected."};
    static constexpr ExceptionMessage FileWriteModeExpected{172, "'Create', 'Append' or 'Overwrite' expected."};
    static constexpr ExceptionMessage FileNotationExpected{173, "'Decimal' or 'Scientific' expected."};
    static constexpr ExceptionMessage FileFormatExpected{174, "'txt' or 'mat' expected."};
    static constexpr ExceptionMessage CannotResolvePath{175, "Cannot resolve path to '%s' input file."};
    static constexpr ExceptionMessage PiezoTableMissing{176, "Piezo #%d requires table #%d, but it is not defined."};
    static constexpr ExceptionMessage TableMissing{177, "Table #%d is needed, but it is not defined."};
    static constexpr ExceptionMessage UnknownKeyword{178, "Unknown keyword."};
    static constexpr ExceptionMessage DiffSamplesCountInPiezo{179,
                                                              "All piezo tables must contain the same samples count."};
    static constexpr ExceptionMessage TemperatureValueExpected{180, "Numerical temperature value expected."};
    static constexpr ExceptionMessage SetIDReused{181, "Set ID = %d reused."};
    static constexpr ExceptionMessage DampingAlreadyDefined{182, "DAMPING section already defined."};
    static constexpr ExceptionMessage DampingValueExpected{183, "Numerical damping coefficient value expected."};
    /// @}

    /// Results files.
    /// @{
    static constexpr ExceptionMessage ErrorOpeningResultsFile{200, "Unable to open '%s' results file."};
    static constexpr ExceptionMessage ErrorReadingResultsFile{201, "Unable to read '%s' results file."};
    static constexpr ExceptionMessage InvalidMATHeader{202, "Invalid MAT file header."};
    static constexpr ExceptionMessage MatrixExpected{203, "Unable to read non-matrix objects from MatLab file."};
    static constexpr ExceptionMessage UnsupportedMatrixFormat{204,
                                                              "Unsupported matrix format (unknown flags settings)."};
    static constexpr ExceptionMessage UnsupportedDataFormat{
        205, "Unsupported data format (only doubles and 16-bit signed integers are supported)."};
    static constexpr ExceptionMessage VarNameExpected{
        206, "Unknown data format (variable name expected, other data found)."};
    static constexpr ExceptionMessage VarNameTooLong{207, "Variable name too long."};
    static constexpr ExceptionMessage InvalidDataBlockSize{208, "Invalid raw data block size for '%s' variable."};
    static constexpr ExceptionMessage InvalidWholeBlockSize{209, "Invalid data block size for '%s' variable."};
    static constexpr ExceptionMessage TooManyVariablesDefined{210, "Too many variables defined in the file."};
    static constexpr ExceptionMessage DifferentRowCount{211, "Different rows count in indices and values matrices."};
    /// @}

    /// Queries of results.
    /// @{
    static constexpr ExceptionMessage InvalidRowNumber{300, "Invalid row number provided."};
    static constexpr ExceptionMessage InvalidColNumber{301, "Invalid column number provided."};
    static constexpr ExceptionMessage XOutOfRange{302, "X coordinate out of range."};
    static constexpr ExceptionMessage YOutOfRange{303, "Y coordinate out of range."};
    static constexpr ExceptionMessage ZOutOfRange{304, "Z coordinate out of range."};
    static constexpr ExceptionMessage NoDataFound{305, "No data found for specified cube."};
    /// @}

    /// Results files, continued.
    /// @{
    static constexpr ExceptionMessage TooManyColumnsMat{306, "Too many columns defined in MatLab file."};
    static constexpr ExceptionMessage TooManyColumnsTxt{307, "Too many columns provided (line %d)."};
    static constexpr ExceptionMessage NotEnoughColumnsTxt{
        308, "Not enough columns provided (%d columns missing in line %d)."};
    /// @}
};

}  // namespace orvalo
