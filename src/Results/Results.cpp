#include <Orvalo3DReader/Results/Results.h>

namespace orvalo {

Results::Results(const std::string& fileName) : fileName_(fileName) {}

Results::~Results() = default;

}  // namespace orvalo
