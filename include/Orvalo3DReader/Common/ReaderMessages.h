#pragma once

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// The catalogue of everything that the library can report: one constant per message, with its code and its
/// printf-style text. Codes 100 to 102 are general, 103 to 183 belong to model files, 200 to 211 to results
/// files and 300 to 308 to queries of results. Codes and texts are stable, spellings included: clients match them. A
/// line feed is shown as a space below.
class ORVALO3DREADER_EXPORT ReaderMessages {
public:
    ReaderMessages() = delete;

    /// 100: Error in file "%s", line %d, column %d: %s
    static const ExceptionMessage FileLineColumn;
    /// 101: %s  [Exception thrown in source file '%s', line %d]
    static const ExceptionMessage SourceCodePlace;
    /// 102: Out of memory.
    static const ExceptionMessage OutOfMemory;
    /// 103: Unable to open '%s' input file.
    static const ExceptionMessage ErrorOpeningInputFile;
    /// 104: Unable to read '%s' input file.
    static const ExceptionMessage ErrorReadingInputFile;
    /// 105: Invalid character.
    static const ExceptionMessage LexInvalidChar;
    /// 106: Invalid character (inside keyword).
    static const ExceptionMessage LexInvalidCharKeyword;
    /// 107: Invalid character (inside number).
    static const ExceptionMessage LexInvalidCharNumber;
    /// 108: Unexpected End-Of-File.
    static const ExceptionMessage LexUnexpectedEOF;
    /// 109: Unexpected End-Of-Line.
    static const ExceptionMessage LexUnexpectedEOL;
    /// 110: Include filename missing
    static const ExceptionMessage IncludeFNameMissing;
    /// 111: Recursive include found.
    static const ExceptionMessage RecursvieInclude;
    /// 112: Invalid table ID.
    static const ExceptionMessage InvalidTableID;
    /// 113: Invalid 'ID' property value, use natural number.
    static const ExceptionMessage InvalidIDProperty;
    /// 114: Invalid 'Enabled' property value, 0 or 1 is accepted.
    static const ExceptionMessage InvalidEnabledProperty;
    /// 115: 'Count' property not defined.
    static const ExceptionMessage CountPropertyMissing;
    /// 116: Invalid 'Count' property value
    static const ExceptionMessage InvalidCountValue;
    /// 117: Obligatory property '%s' not defined.
    static const ExceptionMessage ObligatoryMissing;
    /// 118: Numerical property value expected.
    static const ExceptionMessage NumericalValueExpected;
    /// 119: Invalid proverty value provided.
    static const ExceptionMessage InvalidPropertyValue;
    /// 120: Invalid X coordinate value (or out of range).
    static const ExceptionMessage InvalidXCoordinate;
    /// 121: Invalid Y coordinate value (or out of range).
    static const ExceptionMessage InvalidYCoordinate;
    /// 122: Invalid Z coordinate value (or out of range).
    static const ExceptionMessage InvalidZCoordinate;
    /// 123: Currently only the 'point' is supported.
    static const ExceptionMessage ShapePointSupported;
    /// 124: 'U', 'V', 'W' or 'All' expected.
    static const ExceptionMessage ActuatorDirExpected;
    /// 125: 'U', 'V', 'W' or 'M' expected.
    static const ExceptionMessage SensorOutputExpected;
    /// 126: 'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected.
    static const ExceptionMessage DumpOutputExpected;
    /// 127: Piezo point position duplicated (%d,%d).
    static const ExceptionMessage PiezoPointDuplicated;
    /// 128: Piezo direction not supported.
    static const ExceptionMessage PiezoDirectionSupp;
    /// 129: 't' or 'i' expected.
    static const ExceptionMessage PiezoTableOrInterpolated;
    /// 130: Not enough piezo points defined (%d missing)
    static const ExceptionMessage NotEnoughPiezoPoints;
    /// 131: Too many piezo points provided.
    static const ExceptionMessage TooManyPiezoPoints;
    /// 132: Section name expected.
    static const ExceptionMessage SectionNameExpected;
    /// 133: END keyword (section closing) expected.
    static const ExceptionMessage SectionClosingExpected;
    /// 134: ANALYSIS section must be defined first.
    static const ExceptionMessage AnalysisNotDefinedFirst;
    /// 135: ANALYSIS section already defined.
    static const ExceptionMessage AnalysisAlreadyDefined;
    /// 136: ANALYSIS section not defined.
    static const ExceptionMessage AnalysisNotDefined;
    /// 137: MATERIALS section expected here.
    static const ExceptionMessage MaterialsSectionExpected;
    /// 138: MATERIALS section already defined.
    static const ExceptionMessage MaterialsAlreadyDefined;
    /// 139: MATERIALS section not defined.
    static const ExceptionMessage MaterialsNotDefined;
    /// 140: CUBES section expected here.
    static const ExceptionMessage CubesSectionExpected;
    /// 141: CUBES section already defined.
    static const ExceptionMessage CubesAlreadyDefined;
    /// 142: CUBES section not defined.
    static const ExceptionMessage CubesNotDefined;
    /// 143: At least one ACTUATOR or one PIEZO must be defined.
    static const ExceptionMessage ActuatorPiezoNotDefined;
    /// 144: At least one SENSOR or one DUMP must be defined.
    static const ExceptionMessage SensorDumpNotDefined;
    /// 145: Natural number of [1..255] range expected as material index.
    static const ExceptionMessage InvalidMaterialNumber;
    /// 146: Specified material index reused.
    static const ExceptionMessage MaterialIndexReused;
    /// 147: Natural number of [0..3] range expected as material definition format.
    static const ExceptionMessage InvalidMaterialFormat;
    /// 148: Material name expected.
    static const ExceptionMessage MaterialNameExpected;
    /// 149: Selected material definition format is not handled by this version of library.
    static const ExceptionMessage UnsuppMaterialFormat;
    /// 150: Incorrect material index provided.
    static const ExceptionMessage IncorrectMaterialIndex;
    /// 151: Material no.%d is not defined.
    static const ExceptionMessage MaterialNotDefined;
    /// 152: Invalid 'Format' property value, 0 or 1 is allowed.
    static const ExceptionMessage InvalidCubesFormat;
    /// 154: Init values are not handled by current version of the library.
    static const ExceptionMessage UnsupportedInitValues;
    /// 155: Not enough cubes defined (%d missing)
    static const ExceptionMessage NotEnoughCubes;
    /// 156: Too many cubes provided.
    static const ExceptionMessage TooManyCubes;
    /// 157: Not enough table elements defined (%d missing)
    static const ExceptionMessage NotEnoughTableElements;
    /// 158: Too many table elements provided.
    static const ExceptionMessage TooManyTableElements;
    /// 159: One or more obligatory properties were not defined.
    static const ExceptionMessage ObligatoryPropNotDefined;
    /// 160: Table ID already specified in current section.
    static const ExceptionMessage TableIDAlreadySpecified;
    /// 161: Table ID = %d reused.
    static const ExceptionMessage TableIDReused;
    /// 162: Piezo ID = %d reused.
    static const ExceptionMessage PiezoIDReused;
    /// 163: Sensor ID = %d reused.
    static const ExceptionMessage SensorIDReused;
    /// 164: Dump ID = %d reused.
    static const ExceptionMessage DumpIDReused;
    /// 165: Append mode not allowed while creating MAT file.
    static const ExceptionMessage AppendNotSupportedMAT;
    /// 166: 'Definition' or 'Wave' expected.
    static const ExceptionMessage ActuatorInputExpected;
    /// 167: 'Force' or 'Absolute' expected.
    static const ExceptionMessage ActuatorMethodExpected;
    /// 168: 'FullPulse', 'HalfPulse' or 'ContinuousWave' expected.
    static const ExceptionMessage ActuatorTypeExpected;
    /// 169: 'Square', 'Sine' or 'Gaussian' expected.
    static const ExceptionMessage ActuatorWaveformExpected;
    /// 170: 'None' or 'HannWindow' expected.
    static const ExceptionMessage ActuatorEnvelopeExpected;
    /// 171: 'None' or 'Invert' expected.
    static const ExceptionMessage ActuatorProcesngExpected;
    /// 172: 'Create', 'Append' or 'Overwrite' expected.
    static const ExceptionMessage FileWriteModeExpected;
    /// 173: 'Decimal' or 'Scientific' expected.
    static const ExceptionMessage FileNotationExpected;
    /// 174: 'txt' or 'mat' expected.
    static const ExceptionMessage FileFormatExpected;
    /// 175: Cannot resolve path to '%s' input file.
    static const ExceptionMessage CannotResolvePath;
    /// 176: Piezo #%d requires table #%d, but it is not defined.
    static const ExceptionMessage PiezoTableMissing;
    /// 177: Table #%d is needed, but it is not defined.
    static const ExceptionMessage TableMissing;
    /// 178: Unknown keyword.
    static const ExceptionMessage UnknownKeyword;
    /// 179: All piezo tables must contain the same samples count.
    static const ExceptionMessage DiffSamplesCountInPiezo;
    /// 180: Numerical temperature value expected.
    static const ExceptionMessage TemperatureValueExpected;
    /// 181: Set ID = %d reused.
    static const ExceptionMessage SetIDReused;
    /// 182: DAMPING section already defined.
    static const ExceptionMessage DampingAlreadyDefined;
    /// 183: Numerical damping coefficient value expected.
    static const ExceptionMessage DampingValueExpected;
    /// 200: Unable to open '%s' results file.
    static const ExceptionMessage ErrorOpeningResultsFile;
    /// 201: Unable to read '%s' results file.
    static const ExceptionMessage ErrorReadingResultsFile;
    /// 202: Invalid MAT file header.
    static const ExceptionMessage InvalidMATHeader;
    /// 203: Unable to read non-matrix objects from MatLab file.
    static const ExceptionMessage MatrixExpected;
    /// 204: Unsupported matrix format (unknown flags settings).
    static const ExceptionMessage UnsupportedMatrixFormat;
    /// 205: Unsupported data format (only doubles and 16-bit signed integers are supported).
    static const ExceptionMessage UnsupportedDataFormat;
    /// 206: Unknown data format (variable name expected, other data found).
    static const ExceptionMessage VarNameExpected;
    /// 207: Variable name too long.
    static const ExceptionMessage VarNameTooLong;
    /// 208: Invalid raw data block size for '%s' variable.
    static const ExceptionMessage InvalidDataBlockSize;
    /// 209: Invalid data block size for '%s' variable.
    static const ExceptionMessage InvalidWholeBlockSize;
    /// 210: Too many variables defined in the file.
    static const ExceptionMessage TooManyVariablesDefined;
    /// 211: Different rows count in indices and values matrices.
    static const ExceptionMessage DifferentRowCount;
    /// 300: Invalid row number provided.
    static const ExceptionMessage InvalidRowNumber;
    /// 301: Invalid column number provided.
    static const ExceptionMessage InvalidColNumber;
    /// 302: X coordinate out of range.
    static const ExceptionMessage XOutOfRange;
    /// 303: Y coordinate out of range.
    static const ExceptionMessage YOutOfRange;
    /// 304: Z coordinate out of range.
    static const ExceptionMessage ZOutOfRange;
    /// 305: No data found for specified cube.
    static const ExceptionMessage NoDataFound;
    /// 306: Too many columns defined in MatLab file.
    static const ExceptionMessage TooManyColumnsMat;
    /// 307: Too many columns provided (line %d).
    static const ExceptionMessage TooManyColumnsTxt;
    /// 308: Not enough columns provided (%d columns missing in line %d).
    static const ExceptionMessage NotEnoughColumnsTxt;
};

}  // namespace orvalo
