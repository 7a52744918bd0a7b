#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Model/Model.h>
#include <Orvalo3DReader/Write/WriteError.h>
#include <Orvalo3DReader/Write/WriteOptions.h>

namespace orvalo {

/// Writes a model that Reader reads back equal, to the last bit of every number. Properties that have their defaults
/// are left out, numbers have as few digits as bring them back, and times are the shortest microseconds that do.
///
/// What the file has no place for is not written: the bounds, which follow from the cells; generated tables, which are
/// made again from their definitions, with IDs counted anew; IDs of actuators, positions of dumps, and what the
/// materials hold that their format does not give. Records at the end of the grid that are all zero, as a short list of
/// rows leaves them, are declared but not written.
///
/// Throws WriteError before anything is written where the model holds what the reader would refuse or take for
/// something else, and where the file cannot be written; Stopped; and OutOfMemory. The file, or both of them, is
/// complete or not there: it is written under another name in the same directory and then moved. Takes up to 4 MiB
/// of memory.
ORVALO3DREADER_EXPORT void WriteModel(const Model& model, const std::string& path, const WriteOptions& options = {});

}  // namespace orvalo
