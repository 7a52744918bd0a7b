#pragma once

#include <string>

namespace orvalo {

/// How the file is opened.
enum FileWriteMode : int {
    FileWriteModeOverwrite = 0,  ///< `overwrite`.
    FileWriteModeCreate = 1,     ///< `create`.
    FileWriteModeAppend = 2,     ///< `append`.
};

/// How numbers are written into a text.
enum FileNotation : int {
    FileNotationDecimal = 0,     ///< `decimal`.
    FileNotationScientific = 1,  ///< `scientific`.
};

/// What kind of file is written.
enum FileFormat : int {
    FileFormatTxt = 0,  ///< `txt`: text.
    FileFormatMat = 1,  ///< `mat`: a MAT-file.
};

/// Where and how an output of the simulation is written.
struct FileProperties {
    /// In lower case, without a directory.
    std::string fileName;
    /// A FileWriteMode.
    int writeMode = FileWriteModeOverwrite;
    /// A FileNotation.
    int notation = FileNotationScientific;
    /// A FileFormat.
    int fileFormat = FileFormatTxt;
};

}  // namespace orvalo
