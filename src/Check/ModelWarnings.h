#pragma once

#include <string>

#include <Orvalo3DReader/Check/CheckOptions.h>
#include <Orvalo3DReader/Model/Model.h>

namespace orvalo {

class ErrorCollector;

/// Adds the warnings about a model that was read from that path: what the reader takes, but was likely not meant.
void AddModelWarnings(const Model& model, const std::string& path, const CheckOptions& options, ErrorCollector& found);

}  // namespace orvalo
