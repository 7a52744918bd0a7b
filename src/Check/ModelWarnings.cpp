#include "Check/ModelWarnings.h"

#include "Check/ErrorCollector.h"

namespace orvalo {

void AddModelWarnings(const Model&, const std::string&, const CheckOptions&, ErrorCollector&) {}

}  // namespace orvalo
