#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CheckedFile.h"

/// All that was found as a SARIF 2.1.0 log, for code hosts and editors.
class SarifLog {
public:
    void Add(const CheckedFile& file);
    nlohmann::ordered_json Document() const;

private:
    std::size_t RuleIndex(const orvalo::Diagnostic& diagnostic);

    std::vector<std::string> ruleNames_;
    nlohmann::ordered_json rules_ = nlohmann::ordered_json::array();
    nlohmann::ordered_json results_ = nlohmann::ordered_json::array();
};
