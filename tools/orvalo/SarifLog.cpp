#include "SarifLog.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Check/Rules.h>

#include "CheckedFile.h"
#include "Input.h"
#include "PathText.h"

namespace {

using Json = nlohmann::ordered_json;

const char* LevelOf(orvalo::Severity severity) {
    return severity == orvalo::Severity::Error ? "error" : "warning";
}

std::string UriOf(const std::string& path) {
    const std::filesystem::path file = PathOf(path);
    std::string name = TextOf(file);
    if constexpr (std::filesystem::path::preferred_separator == '\\') std::replace(name.begin(), name.end(), '\\', '/');
    std::string uri;
    if (file.is_absolute()) uri = name.starts_with('/') ? "file://" : "file:///";
    for (const char c : name) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                           std::string_view("-._~/").find(c) != std::string_view::npos;
        uri += plain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return uri;
}

Json ArtifactOf(const std::string& path) {
    return {{"uri", UriOf(path)}};
}

/// Where something is; the file as a whole when it has no place in it.
Json LocationOf(const Input& input, const orvalo::InputPlace& place, std::uint64_t length) {
    const bool placed = !place.path.empty();
    Json physical = {{"artifactLocation", ArtifactOf(placed ? input.Shown(place.path) : input.Name())}};
    if (placed) {
        Json region = {{"startLine", place.line}, {"startColumn", place.column}};
        if (length > 0) region["endColumn"] = place.column + length;
        region["byteOffset"] = place.offset;
        region["byteLength"] = length;
        physical["region"] = region;
    }
    return {{"physicalLocation", physical}};
}

Json RelatedOf(const Input& input, const orvalo::InputPlace& place, std::uint64_t length, const std::string& message) {
    Json location = LocationOf(input, place, length);
    location["message"] = {{"text", message}};
    return location;
}

Json RelatedLocations(const Input& input, const orvalo::Diagnostic& diagnostic) {
    Json list = Json::array();
    for (const orvalo::Note& note : diagnostic.notes) {
        list.push_back(RelatedOf(input, note.place, note.length, input.ShownMessage(note.message)));
    }
    for (const orvalo::InputPlace& place : diagnostic.includedFrom) {
        list.push_back(RelatedOf(input, place, 0, "Included from here."));
    }
    return list;
}

Json FixesOf(const Input& input, const orvalo::Diagnostic& diagnostic) {
    Json list = Json::array();
    for (const orvalo::Fix& fix : diagnostic.fixes) {
        const Json replacement = {{"deletedRegion", {{"byteOffset", fix.place.offset}, {"byteLength", fix.length}}},
                                  {"insertedContent", {{"text", fix.replacement}}}};
        list.push_back({{"artifactChanges", Json::array({{{"artifactLocation", ArtifactOf(input.Shown(fix.place.path))},
                                                          {"replacements", Json::array({replacement})}}})}});
    }
    return list;
}

Json Descriptor(const orvalo::Diagnostic& diagnostic) {
    Json descriptor = {{"id", diagnostic.rule}};
    const orvalo::Rule* rule = orvalo::FindRule(diagnostic.rule.c_str());
    if (rule == nullptr) return descriptor;
    descriptor["shortDescription"] = {{"text", rule->explanation}};
    descriptor["help"] = {
        {"text", fmt::format("{}\n\nBad:\n{}\n\nGood:\n{}", rule->explanation, rule->bad, rule->good)}};
    descriptor["defaultConfiguration"] = {{"level", LevelOf(rule->severity)}};
    return descriptor;
}

}  // namespace

std::size_t SarifLog::RuleIndex(const orvalo::Diagnostic& diagnostic) {
    const auto found = std::find(ruleNames_.begin(), ruleNames_.end(), diagnostic.rule);
    const auto index = static_cast<std::size_t>(found - ruleNames_.begin());
    if (found == ruleNames_.end()) {
        ruleNames_.push_back(diagnostic.rule);
        rules_.push_back(Descriptor(diagnostic));
    }
    return index;
}

void SarifLog::Add(const CheckedFile& file) {
    for (const orvalo::Diagnostic& diagnostic : file.diagnostics) {
        Json result = {{"ruleId", diagnostic.rule},
                       {"ruleIndex", RuleIndex(diagnostic)},
                       {"level", LevelOf(diagnostic.severity)},
                       {"message", {{"text", file.input.ShownMessage(diagnostic.message)}}},
                       {"locations", Json::array({LocationOf(file.input, diagnostic.place, diagnostic.length)})}};
        const Json related = RelatedLocations(file.input, diagnostic);
        if (!related.empty()) result["relatedLocations"] = related;
        const Json fixes = FixesOf(file.input, diagnostic);
        if (!fixes.empty()) result["fixes"] = fixes;
        Json& properties = result["properties"] = {{"code", diagnostic.code}, {"expected", diagnostic.expected}};
        if (diagnostic.row > 0) properties["row"] = diagnostic.row;
        results_.push_back(result);
    }
}

Json SarifLog::Document() const {
    const Json driver = {{"name", "orvalo"}, {"version", ORVALO_VERSION}, {"rules", rules_}};
    const Json run = {{"tool", {{"driver", driver}}}, {"columnKind", "unicodeCodePoints"}, {"results", results_}};
    return {{"$schema", "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/sarif-schema-2.1.0.json"},
            {"version", "2.1.0"},
            {"runs", Json::array({run})}};
}
