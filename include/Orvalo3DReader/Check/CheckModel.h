#pragma once

#include <string>
#include <vector>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Check/Diagnostic.h>
#include <Orvalo3DReader/Export.h>

namespace orvalo {

/// All that is wrong with the model file of that path and with the files that it includes, in the order in which they
/// are read; nothing for a good one. The first error has the code, the message and the place of the one that Reader
/// throws, and there is none if Reader accepts the file. After an error the check goes on where reading makes sense
/// again; what only follows from an earlier error is left out.
///
/// Takes the memory of a Model for the time of the check, but generates no excitation tables. Throws Stopped, and
/// OutOfMemory where memory does not suffice for the check itself.
ORVALO3DREADER_EXPORT std::vector<Diagnostic> CheckModel(const std::string& path, const CheckOptions& options = {});

}  // namespace orvalo
