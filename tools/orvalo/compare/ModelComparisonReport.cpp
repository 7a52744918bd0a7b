#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "HarmlessText.h"
#include "SummaryLines.h"
#include "compare/ComparisonReport.h"

namespace {

using Json = nlohmann::ordered_json;

const char* KindName(ModelComparison::Kind kind) {
    constexpr const char* names[] = {"added", "removed", "changed"};
    return names[static_cast<int>(kind)];
}

Json ToJson(const std::optional<CellComparison::Content>& content) {
    if (!content) return nullptr;
    Json entry = {{"material", content->material}};
    if (content->value) entry["value"] = *content->value;
    return entry;
}

Json ToJson(const CellComparison& cells) {
    Json entry = {{"onlyA", cells.onlyA}, {"onlyB", cells.onlyB}, {"differing", cells.differing}, {"box", nullptr}};
    const orvalo::Bounds& box = cells.box;
    if (box.defined) {
        entry["box"] = {{"x", {{"min", box.minX}, {"max", box.maxX}}},
                        {"y", {{"min", box.minY}, {"max", box.maxY}}},
                        {"z", {{"min", box.minZ}, {"max", box.maxZ}}}};
    }
    entry["first"] = Json::array();
    for (const CellComparison::Change& change : cells.first) {
        entry["first"].push_back({{"cube", {change.cell.x, change.cell.y, change.cell.z}},
                                  {"a", ToJson(change.a)},
                                  {"b", ToJson(change.b)}});
    }
    return entry;
}

Json ToJson(const ModelComparison::Property& property) {
    if (property.entries > 0) {
        return {{"property", property.name}, {"entries", property.entries}, {"first", property.firstEntry}};
    }
    return {{"property", property.name}, {"a", property.a}, {"b", property.b}};
}

/// A value without the quotes and braces of JSON.
std::string ValueText(const Json& value) {
    if (value.is_string()) return value.empty() ? "\"\"" : value.get<std::string>();
    if (value.is_null()) return "none";
    if (!value.is_structured()) return value.is_number_float() ? fmt::format("{}", value.get<double>()) : value.dump();
    std::vector<std::string> parts;
    for (const auto& [key, part] : value.items()) {
        parts.push_back(value.is_object() ? key + " " + ValueText(part) : ValueText(part));
    }
    return fmt::format("({})", fmt::join(parts, ", "));
}

std::string PropertyText(const ModelComparison::Property& property) {
    if (property.entries > 0) {
        return fmt::format("{}: {} {}, first {}", property.name, property.entries,
                           property.entries == 1 ? "entry differs" : "entries differ", property.firstEntry);
    }
    return fmt::format("{} {} -> {}", property.name, ValueText(property.a), ValueText(property.b));
}

std::string ContentText(const std::optional<CellComparison::Content>& content) {
    if (!content) return "none";
    return fmt::format("#{}", content->material) + (content->value ? fmt::format(" {}", *content->value) : "");
}

void AddCells(SummaryLines& lines, const char* title, const CellComparison& cells) {
    if (cells.Count() == 0) return;
    const orvalo::Bounds& box = cells.box;
    lines.Add(title, fmt::format("{} changed, {} added, {} removed, in x {}..{}, y {}..{}, z {}..{}", cells.differing,
                                 cells.onlyB, cells.onlyA, box.minX, box.maxX, box.minY, box.maxY, box.minZ, box.maxZ));
    for (const CellComparison::Change& change : cells.first) {
        lines.Add("", fmt::format("({}, {}, {}): {} -> {}", change.cell.x, change.cell.y, change.cell.z,
                                  ContentText(change.a), ContentText(change.b)));
    }
    if (cells.Count() > cells.first.size())
        lines.Add("", fmt::format("... and {} more", cells.Count() - cells.first.size()));
}

void AddSection(SummaryLines& lines, const ModelComparison::Section& section) {
    std::vector<std::string> texts;
    for (const ModelComparison::Item& item : section.items) {
        std::string text = item.name;
        if (item.kind != ModelComparison::Kind::changed) text += fmt::format(" {}", KindName(item.kind));
        std::vector<std::string> properties;
        for (const ModelComparison::Property& property : item.properties) properties.push_back(PropertyText(property));
        if (!properties.empty()) text += (text.empty() ? "" : ": ") + fmt::format("{}", fmt::join(properties, ", "));
        texts.push_back(Harmless(text));
    }
    lines.AddList(section.name, texts, 50);
}

}  // namespace

Json ToJson(const ModelComparison& comparison) {
    Json document;
    document["equal"] = comparison.Equal();
    document["sections"] = Json::array();
    for (const ModelComparison::Section& section : comparison.sections) {
        Json items = Json::array();
        for (const ModelComparison::Item& item : section.items) {
            Json properties = Json::array();
            for (const ModelComparison::Property& property : item.properties) properties.push_back(ToJson(property));
            items.push_back({{"item", item.name}, {"change", KindName(item.kind)}, {"properties", properties}});
        }
        document["sections"].push_back({{"section", section.name}, {"items", items}});
    }
    document["cubes"] = ToJson(comparison.cubes);
    document["dampingCubes"] = ToJson(comparison.damping);
    return document;
}

std::string ToText(const ModelComparison& comparison) {
    SummaryLines lines;
    bool cellsAdded = false;
    const auto addCells = [&] {
        if (cellsAdded) return;
        AddCells(lines, "CUBES", comparison.cubes);
        AddCells(lines, "DAMPING", comparison.damping);
        cellsAdded = true;
    };
    for (const ModelComparison::Section& section : comparison.sections) {
        if (section.name != "ANALYSIS" && section.name != "MATERIALS") addCells();
        AddSection(lines, section);
    }
    addCells();
    return lines.Text();
}
