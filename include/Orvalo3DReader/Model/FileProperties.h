#pragma once

#include <string>

namespace orvalo {

/// Where and how an output of the simulation is written.
struct FileProperties {
    /// In lower case, without a directory.
    std::string fileName;
    /// 0 overwrite, 1 create, 2 append.
    int writeMode = 0;
    /// 0 decimal, 1 scientific.
    int notation = 1;
    /// 0 text, 1 MAT-file.
    int fileFormat = 0;
};

}  // namespace orvalo
