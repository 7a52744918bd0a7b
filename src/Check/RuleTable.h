#pragma once

namespace orvalo {

/// The name of the rule for errors of a catalogue code.
const char* RuleOfCode(int code);

}  // namespace orvalo
