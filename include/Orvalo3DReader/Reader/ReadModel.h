#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Reader/ReadError.h>
#include <Orvalo3DReader/Reader/ReadOptions.h>

namespace orvalo {

/// Reads a model input file, with the files that it includes. Throws ReadError at the first error, and Stopped.
ORVALO3DREADER_EXPORT Model ReadModel(const std::string& path, const ReadOptions& options = {});

}  // namespace orvalo
