#include "Check/RuleTable.h"

namespace orvalo {

const char* RuleOfCode(int) {
    return "error";
}

}  // namespace orvalo
