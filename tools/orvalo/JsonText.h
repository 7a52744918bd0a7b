#pragma once

#include <cstdio>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

/// Writes a document to standard output. Bytes of paths and names that are not UTF-8 are replaced.
inline void PrintJson(const nlohmann::ordered_json& document) {
    fmt::print("{}\n", document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}
