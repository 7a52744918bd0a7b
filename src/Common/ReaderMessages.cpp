#include <Orvalo3DReader/Common/ReaderMessages.h>

namespace orvalo {

constinit const ExceptionMessage ReaderMessages::FileLineColumn{100, "Error in file \"%s\", line %d, column %d:\n%s"};
constinit const ExceptionMessage ReaderMessages::SourceCodePlace{
    101, "%s\n\n[Exception thrown in source file '%s', line %d]"};
constinit const ExceptionMessage ReaderMessages::OutOfMemory{102, "Out of memory."};
constinit const ExceptionMessage ReaderMessages::ErrorOpeningInputFile{103, "Unable to open '%s' input file."};
constinit const ExceptionMessage ReaderMessages::ErrorReadingInputFile{104, "Unable to read '%s' input file."};
constinit const ExceptionMessage ReaderMessages::LexInvalidChar{105, "Invalid character."};
constinit const ExceptionMessage ReaderMessages::LexInvalidCharKeyword{106, "Invalid character (inside keyword)."};
constinit const ExceptionMessage ReaderMessages::LexInvalidCharNumber{107, "Invalid character (inside number)."};
constinit const ExceptionMessage ReaderMessages::LexUnexpectedEOF{108, "Unexpected End-Of-File."};
constinit const ExceptionMessage ReaderMessages::LexUnexpectedEOL{109, "Unexpected End-Of-Line."};
constinit const ExceptionMessage ReaderMessages::IncludeFNameMissing{110, "Include filename missing"};
constinit const ExceptionMessage ReaderMessages::RecursvieInclude{111, "Recursive include found."};
constinit const ExceptionMessage ReaderMessages::InvalidTableID{112, "Invalid table ID."};
constinit const ExceptionMessage ReaderMessages::InvalidIDProperty{113,
                                                                   "Invalid 'ID' property value, use natural number."};
constinit const ExceptionMessage ReaderMessages::InvalidEnabledProperty{
    114, "Invalid 'Enabled' property value, 0 or 1 is accepted."};
constinit const ExceptionMessage ReaderMessages::CountPropertyMissing{115, "'Count' property not defined."};
constinit const ExceptionMessage ReaderMessages::InvalidCountValue{116, "Invalid 'Count' property value"};
constinit const ExceptionMessage ReaderMessages::ObligatoryMissing{117, "Obligatory property '%s' not defined."};
constinit const ExceptionMessage ReaderMessages::NumericalValueExpected{118, "Numerical property value expected."};
constinit const ExceptionMessage ReaderMessages::InvalidPropertyValue{119, "Invalid proverty value provided."};
constinit const ExceptionMessage ReaderMessages::InvalidXCoordinate{120,
                                                                    "Invalid X coordinate value (or out of range)."};
constinit const ExceptionMessage ReaderMessages::InvalidYCoordinate{121,
                                                                    "Invalid Y coordinate value (or out of range)."};
constinit const ExceptionMessage ReaderMessages::InvalidZCoordinate{122,
                                                                    "Invalid Z coordinate value (or out of range)."};
constinit const ExceptionMessage ReaderMessages::ShapePointSupported{123, "Currently only the 'point' is supported."};
constinit const ExceptionMessage ReaderMessages::ActuatorDirExpected{124, "'U', 'V', 'W' or 'All' expected."};
constinit const ExceptionMessage ReaderMessages::SensorOutputExpected{125, "'U', 'V', 'W' or 'M' expected."};
constinit const ExceptionMessage ReaderMessages::DumpOutputExpected{
    126, "'U0', 'V0', 'W0', 'U1', 'V1', 'W1', 'U2', 'V2', 'W2' or 'All' expected."};
constinit const ExceptionMessage ReaderMessages::PiezoPointDuplicated{127, "Piezo point position duplicated (%d,%d)."};
constinit const ExceptionMessage ReaderMessages::PiezoDirectionSupp{128, "Piezo direction not supported."};
constinit const ExceptionMessage ReaderMessages::PiezoTableOrInterpolated{129, "'t' or 'i' expected."};
constinit const ExceptionMessage ReaderMessages::NotEnoughPiezoPoints{130,
                                                                      "Not enough piezo points defined (%d missing)"};
constinit const ExceptionMessage ReaderMessages::TooManyPiezoPoints{131, "Too many piezo points provided."};
constinit const ExceptionMessage ReaderMessages::SectionNameExpected{132, "Section name expected."};
constinit const ExceptionMessage ReaderMessages::SectionClosingExpected{133, "END keyword (section closing) expected."};
constinit const ExceptionMessage ReaderMessages::AnalysisNotDefinedFirst{134,
                                                                         "ANALYSIS section must be defined first."};
constinit const ExceptionMessage ReaderMessages::AnalysisAlreadyDefined{135, "ANALYSIS section already defined."};
constinit const ExceptionMessage ReaderMessages::AnalysisNotDefined{136, "ANALYSIS section not defined."};
constinit const ExceptionMessage ReaderMessages::MaterialsSectionExpected{137, "MATERIALS section expected here."};
constinit const ExceptionMessage ReaderMessages::MaterialsAlreadyDefined{138, "MATERIALS section already defined."};
constinit const ExceptionMessage ReaderMessages::MaterialsNotDefined{139, "MATERIALS section not defined."};
constinit const ExceptionMessage ReaderMessages::CubesSectionExpected{140, "CUBES section expected here."};
constinit const ExceptionMessage ReaderMessages::CubesAlreadyDefined{141, "CUBES section already defined."};
constinit const ExceptionMessage ReaderMessages::CubesNotDefined{142, "CUBES section not defined."};
constinit const ExceptionMessage ReaderMessages::ActuatorPiezoNotDefined{
    143, "At least one ACTUATOR or one PIEZO must be defined."};
constinit const ExceptionMessage ReaderMessages::SensorDumpNotDefined{
    144, "At least one SENSOR or one DUMP must be defined."};
constinit const ExceptionMessage ReaderMessages::InvalidMaterialNumber{
    145, "Natural number of [1..255] range expected as material index."};
constinit const ExceptionMessage ReaderMessages::MaterialIndexReused{146, "Specified material index reused."};
constinit const ExceptionMessage ReaderMessages::InvalidMaterialFormat{
    147, "Natural number of [0..3] range expected as material definition format."};
constinit const ExceptionMessage ReaderMessages::MaterialNameExpected{148, "Material name expected."};
constinit const ExceptionMessage ReaderMessages::UnsuppMaterialFormat{
    149, "Selected material definition format is not handled by this version of library."};
constinit const ExceptionMessage ReaderMessages::IncorrectMaterialIndex{150, "Incorrect material index provided."};
constinit const ExceptionMessage ReaderMessages::MaterialNotDefined{151, "Material no.%d is not defined."};
constinit const ExceptionMessage ReaderMessages::InvalidCubesFormat{
    152, "Invalid 'Format' property value, 0 or 1 is allowed."};
constinit const ExceptionMessage ReaderMessages::UnsupportedInitValues{
    154, "Init values are not handled by current version of the library."};
constinit const ExceptionMessage ReaderMessages::NotEnoughCubes{155, "Not enough cubes defined (%d missing)"};
constinit const ExceptionMessage ReaderMessages::TooManyCubes{156, "Too many cubes provided."};
constinit const ExceptionMessage ReaderMessages::NotEnoughTableElements{
    157, "Not enough table elements defined (%d missing)"};
constinit const ExceptionMessage ReaderMessages::TooManyTableElements{158, "Too many table elements provided."};
constinit const ExceptionMessage ReaderMessages::ObligatoryPropNotDefined{
    159, "One or more obligatory properties were not defined."};
constinit const ExceptionMessage ReaderMessages::TableIDAlreadySpecified{
    160, "Table ID already specified in current section."};
constinit const ExceptionMessage ReaderMessages::TableIDReused{161, "Table ID = %d reused."};
constinit const ExceptionMessage ReaderMessages::PiezoIDReused{162, "Piezo ID = %d reused."};
constinit const ExceptionMessage ReaderMessages::SensorIDReused{163, "Sensor ID = %d reused."};
constinit const ExceptionMessage ReaderMessages::DumpIDReused{164, "Dump ID = %d reused."};
constinit const ExceptionMessage ReaderMessages::AppendNotSupportedMAT{
    165, "Append mode not allowed while creating MAT file."};
constinit const ExceptionMessage ReaderMessages::ActuatorInputExpected{166, "'Definition' or 'Wave' expected."};
constinit const ExceptionMessage ReaderMessages::ActuatorMethodExpected{167, "'Force' or 'Absolute' expected."};
constinit const ExceptionMessage ReaderMessages::ActuatorTypeExpected{
    168, "'FullPulse', 'HalfPulse' or 'ContinuousWave' expected."};
constinit const ExceptionMessage ReaderMessages::ActuatorWaveformExpected{169,
                                                                          "'Square', 'Sine' or 'Gaussian' expected."};
constinit const ExceptionMessage ReaderMessages::ActuatorEnvelopeExpected{170, "'None' or 'HannWindow' expected."};
constinit const ExceptionMessage ReaderMessages::ActuatorProcesngExpected{171, "'None' or 'Invert' expected."};
constinit const ExceptionMessage ReaderMessages::FileWriteModeExpected{172,
                                                                       "'Create', 'Append' or 'Overwrite' expected."};
constinit const ExceptionMessage ReaderMessages::FileNotationExpected{173, "'Decimal' or 'Scientific' expected."};
constinit const ExceptionMessage ReaderMessages::FileFormatExpected{174, "'txt' or 'mat' expected."};
constinit const ExceptionMessage ReaderMessages::CannotResolvePath{175, "Cannot resolve path to '%s' input file."};
constinit const ExceptionMessage ReaderMessages::PiezoTableMissing{
    176, "Piezo #%d requires table #%d, but it is not defined."};
constinit const ExceptionMessage ReaderMessages::TableMissing{177, "Table #%d is needed, but it is not defined."};
constinit const ExceptionMessage ReaderMessages::UnknownKeyword{178, "Unknown keyword."};
constinit const ExceptionMessage ReaderMessages::DiffSamplesCountInPiezo{
    179, "All piezo tables must contain the same samples count."};
constinit const ExceptionMessage ReaderMessages::TemperatureValueExpected{180, "Numerical temperature value expected."};
constinit const ExceptionMessage ReaderMessages::SetIDReused{181, "Set ID = %d reused."};
constinit const ExceptionMessage ReaderMessages::DampingAlreadyDefined{182, "DAMPING section already defined."};
constinit const ExceptionMessage ReaderMessages::DampingValueExpected{183,
                                                                      "Numerical damping coefficient value expected."};
constinit const ExceptionMessage ReaderMessages::ErrorOpeningResultsFile{200, "Unable to open '%s' results file."};
constinit const ExceptionMessage ReaderMessages::ErrorReadingResultsFile{201, "Unable to read '%s' results file."};
constinit const ExceptionMessage ReaderMessages::InvalidMATHeader{202, "Invalid MAT file header."};
constinit const ExceptionMessage ReaderMessages::MatrixExpected{203,
                                                                "Unable to read non-matrix objects from MatLab file."};
constinit const ExceptionMessage ReaderMessages::UnsupportedMatrixFormat{
    204, "Unsupported matrix format (unknown flags settings)."};
constinit const ExceptionMessage ReaderMessages::UnsupportedDataFormat{
    205, "Unsupported data format (only doubles and 16-bit signed integers are supported)."};
constinit const ExceptionMessage ReaderMessages::VarNameExpected{
    206, "Unknown data format (variable name expected, other data found)."};
constinit const ExceptionMessage ReaderMessages::VarNameTooLong{207, "Variable name too long."};
constinit const ExceptionMessage ReaderMessages::InvalidDataBlockSize{208,
                                                                      "Invalid raw data block size for '%s' variable."};
constinit const ExceptionMessage ReaderMessages::InvalidWholeBlockSize{209,
                                                                       "Invalid data block size for '%s' variable."};
constinit const ExceptionMessage ReaderMessages::TooManyVariablesDefined{210,
                                                                         "Too many variables defined in the file."};
constinit const ExceptionMessage ReaderMessages::DifferentRowCount{
    211, "Different rows count in indices and values matrices."};
constinit const ExceptionMessage ReaderMessages::InvalidRowNumber{300, "Invalid row number provided."};
constinit const ExceptionMessage ReaderMessages::InvalidColNumber{301, "Invalid column number provided."};
constinit const ExceptionMessage ReaderMessages::XOutOfRange{302, "X coordinate out of range."};
constinit const ExceptionMessage ReaderMessages::YOutOfRange{303, "Y coordinate out of range."};
constinit const ExceptionMessage ReaderMessages::ZOutOfRange{304, "Z coordinate out of range."};
constinit const ExceptionMessage ReaderMessages::NoDataFound{305, "No data found for specified cube."};
constinit const ExceptionMessage ReaderMessages::TooManyColumnsMat{306, "Too many columns defined in MatLab file."};
constinit const ExceptionMessage ReaderMessages::TooManyColumnsTxt{307, "Too many columns provided (line %d)."};
constinit const ExceptionMessage ReaderMessages::NotEnoughColumnsTxt{
    308, "Not enough columns provided (%d columns missing in line %d)."};

}  // namespace orvalo
