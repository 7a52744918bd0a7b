#pragma once

#include <memory>
#include <string>

#include <Orvalo3DReader/Common/Exception.h>
#include <Orvalo3DReader/Export.h>
#include <Orvalo3DReader/Reader/ReadOptions.h>
#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

/// Reads a simulation results file into a ResultsMat or a ResultsTxt, told apart by content. Throws Exception at the
/// first error, and Stopped.
ORVALO3DREADER_EXPORT std::unique_ptr<Results> ReadResults(const std::string& path, const ReadOptions& options = {});

}  // namespace orvalo
