#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Write/ResultsView.h>
#include <Orvalo3DReader/Write/WriteError.h>
#include <Orvalo3DReader/Write/WriteOptions.h>

namespace orvalo {

/// Writes results as a MAT-file that ResultsReader reads back equal, to the last bit of every value: the matrices `val`
/// and `idx`, as 64-bit floating-point and as 16-bit numbers.
///
/// Throws WriteError before anything is written for what no such file can hold: an index beyond 16 bits, no
/// coordinates, none or more than nine value columns, a matrix of more bytes than 32 bits count; and for a file that
/// cannot be written. Otherwise as WriteModel.
ORVALO3DREADER_EXPORT void WriteResultsMat(const Results& results, const std::string& path,
                                           const WriteOptions& options = {});

/// The same for results in the caller's memory.
ORVALO3DREADER_EXPORT void WriteResultsMat(const ResultsView& results, const std::string& path,
                                           const WriteOptions& options = {});

}  // namespace orvalo
