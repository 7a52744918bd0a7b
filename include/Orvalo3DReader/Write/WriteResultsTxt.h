#pragma once

#include <string>

#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Results/Results.h>
#include <Orvalo3DReader/Write/ResultsView.h>
#include <Orvalo3DReader/Write/WriteError.h>
#include <Orvalo3DReader/Write/WriteOptions.h>

namespace orvalo {

/// Writes results as tab-separated text that ResultsReader reads back equal, to the last bit of every value. With
/// coordinates a text always has four index columns: where there are three, f is 0. Columns of results that were read
/// from a MAT-file are named v1, v2 and so on. A signalling NaN becomes a quiet one.
///
/// Throws WriteError before anything is written for what no text of results can hold: an index beyond 16 bits, other
/// index columns than x, y, z and f, no value column, more than 4096 rows without coordinates, a name with a tab or an
/// end of a line, lines of more than 65535 bytes, more than 4096 MiB of numbers; and for a file that cannot be written.
/// Otherwise as WriteModel.
ORVALO3DREADER_EXPORT void WriteResultsTxt(const Results& results, const std::string& path,
                                           const WriteOptions& options = {});

/// The same for results in the caller's memory.
ORVALO3DREADER_EXPORT void WriteResultsTxt(const ResultsView& results, const std::string& path,
                                           const WriteOptions& options = {});

}  // namespace orvalo
