#include "ModelComparison.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "ModelSummary.h"

namespace {

using Json = nlohmann::ordered_json;
using Item = ModelComparison::Item;
using Kind = ModelComparison::Kind;
using Property = ModelComparison::Property;

/// All that the tool knows of a model but for its long lists.
Json Facts(const orvalo::Model& model) {
    Json facts;
    AddToJson(facts, model, Summarize(model, false));
    facts["cellSize"] = model.cellSize;
    // That is for the comparison of cells.
    for (Json& material : facts["materials"]) material.erase("cubes");
    return facts;
}

bool Same(const Json& a, const Json& b, const Tolerance& tolerance) {
    if (a.is_number_float() && b.is_number_float()) return tolerance.Accepts(a.get<double>(), b.get<double>());
    if (a.is_structured() && a.type() == b.type() && a.size() == b.size()) {
        return std::equal(a.begin(), a.end(), b.begin(),
                          [&](const Json& x, const Json& y) { return Same(x, y, tolerance); });
    }
    return a == b;
}

std::vector<Property> ChangedProperties(const Json& a, const Json& b, const Tolerance& tolerance) {
    std::vector<Property> changed;
    const auto at = [](const Json& object, const std::string& key) {
        return object.contains(key) ? object[key] : Json(nullptr);
    };
    for (const auto& [key, value] : a.items()) {
        if (!Same(value, at(b, key), tolerance)) changed.push_back({key, value, at(b, key), 0, ""});
    }
    for (const auto& [key, value] : b.items()) {
        if (!a.contains(key)) changed.push_back({key, nullptr, value, 0, ""});
    }
    return changed;
}

/// Compares lists whose entries are known by a number of their own.
std::vector<Item> CompareByNumber(const Json& a, const Json& b, const char* key, const Tolerance& tolerance) {
    std::map<int, std::pair<const Json*, const Json*>> entries;
    for (const Json& entry : a) entries[entry[key].get<int>()].first = &entry;
    for (const Json& entry : b) entries[entry[key].get<int>()].second = &entry;
    std::vector<Item> items;
    for (const auto& [number, entry] : entries) {
        Item item{fmt::format("#{}", number), Kind::changed, {}};
        if (entry.first == nullptr || entry.second == nullptr) {
            item.kind = entry.first == nullptr ? Kind::added : Kind::removed;
        } else {
            item.properties = ChangedProperties(*entry.first, *entry.second, tolerance);
            if (item.properties.empty()) continue;
        }
        items.push_back(std::move(item));
    }
    return items;
}

/// Compares lists whose entries are known by their order alone. What is the same at the start and at the end is taken
/// for the same things, so that one more in between does not count as a change of all that follow.
std::vector<Item> CompareByOrder(const Json& a, const Json& b, const Tolerance& tolerance) {
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t start = 0;
    while (start < shorter && Same(a[start], b[start], tolerance)) ++start;
    std::size_t end = 0;
    while (end < shorter - start && Same(a[a.size() - 1 - end], b[b.size() - 1 - end], tolerance)) ++end;
    std::vector<Item> items;
    const std::size_t endA = a.size() - end;
    const std::size_t endB = b.size() - end;
    for (std::size_t i = start; i < std::max(endA, endB); ++i) {
        const Kind kind = i >= endA ? Kind::added : i >= endB ? Kind::removed : Kind::changed;
        Item item{fmt::format("no. {}", i + 1), kind, {}};
        if (kind == Kind::changed) item.properties = ChangedProperties(a[i], b[i], tolerance);
        if (kind != Kind::changed || !item.properties.empty()) items.push_back(std::move(item));
    }
    return items;
}

/// Adds a property of an item that may be there already.
void AddProperty(std::vector<Item>& items, const std::string& name, Property property) {
    auto item = std::find_if(items.begin(), items.end(), [&](const Item& other) { return other.name == name; });
    if (item == items.end()) item = items.insert(items.end(), {name, Kind::changed, {}});
    item->properties.push_back(std::move(property));
}

/// Compares long lists of equal length, of which `same` compares entries and `text` shows one of a model.
template <class Same, class Text>
void CompareLists(std::vector<Item>& items, const std::string& item, const std::string& property, std::size_t count,
                  const Same& same, const Text& text) {
    Property found{property, nullptr, nullptr, 0, ""};
    for (std::size_t i = 0; i < count; ++i) {
        if (!same(i) && found.entries++ == 0) found.firstEntry = text(i);
    }
    if (found.entries > 0) AddProperty(items, item, std::move(found));
}

using Tables = std::map<int, std::shared_ptr<orvalo::Table>>;

/// Lists of other lengths differ by their facts already.
void CompareSamples(std::vector<Item>& items, const std::string& prefix, const Tables& a, const Tables& b,
                    const Tolerance& tolerance) {
    for (const auto& [id, tableA] : a) {
        const auto other = b.find(id);
        if (id <= 0 || other == b.end() || other->second->count != tableA->count) continue;
        const orvalo::Table& one = *tableA;
        const orvalo::Table& two = *other->second;
        const bool own = prefix.empty();
        CompareLists(
            items, own ? fmt::format("#{}", id) : prefix, own ? "data" : fmt::format("table {}", id), one.count,
            [&](std::size_t i) { return tolerance.Accepts(one.Get(i), two.Get(i)); },
            [&](std::size_t i) { return fmt::format("sample {}: {} -> {}", i, one.Get(i), two.Get(i)); });
    }
}

std::string ToText(const orvalo::PiezoData::Cell* cell) {
    if (cell == nullptr) return "none";
    return cell->tableU == 0 ? "i" : fmt::format("t {} {} {}", cell->tableU, cell->tableV, cell->tableW);
}

void ComparePiezoPoints(std::vector<Item>& items, const std::string& name, const orvalo::PiezoData& a,
                        const orvalo::PiezoData& b) {
    using Cell = const orvalo::PiezoData::Cell*;
    std::map<unsigned int, std::pair<Cell, Cell>> byKey;
    for (const auto& [key, cell] : a.Cells()) byKey[key].first = cell;
    for (const auto& [key, cell] : b.Cells()) byKey[key].second = cell;
    std::vector<std::pair<Cell, Cell>> pairs;
    pairs.reserve(byKey.size());
    for (const auto& [key, pair] : byKey) pairs.push_back(pair);
    CompareLists(
        items, name, "points", pairs.size(),
        [&](std::size_t i) { return ToText(pairs[i].first) == ToText(pairs[i].second); },
        [&](std::size_t i) {
            const auto [one, two] = pairs[i];
            const Cell any = one == nullptr ? two : one;
            return fmt::format("({}, {}): {} -> {}", any->x, any->y, ToText(one), ToText(two));
        });
}

void ComparePatches(std::vector<Item>& items, const orvalo::Model& a, const orvalo::Model& b,
                    const Tolerance& tolerance) {
    for (const auto& one : a.piezos) {
        for (const auto& two : b.piezos) {
            if (one->shared.id != two->shared.id) continue;
            const std::string name = fmt::format("#{}", one->shared.id);
            ComparePiezoPoints(items, name, one->data, two->data);
            CompareSamples(items, name, one->tables, two->tables, tolerance);
        }
    }
}

void CompareSets(std::vector<Item>& items, const orvalo::Model& a, const orvalo::Model& b) {
    const auto text = [](const orvalo::Point& p) { return fmt::format("({}, {}, {})", p.x, p.y, p.z); };
    for (const auto& [id, one] : a.sets) {
        const auto other = b.sets.find(id);
        if (other == b.sets.end() || other->second->count != one->count) continue;
        const orvalo::Point* p = one->points;
        const orvalo::Point* q = other->second->points;
        CompareLists(
            items, fmt::format("#{}", id), "data", one->count,
            [&](std::size_t i) { return p[i].x == q[i].x && p[i].y == q[i].y && p[i].z == q[i].z; },
            [&](std::size_t i) { return fmt::format("point {}: {} -> {}", i, text(p[i]), text(q[i])); });
    }
}

}  // namespace

ModelComparison Compare(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance) {
    ModelComparison comparison;
    const Json factsA = Facts(a);
    const Json factsB = Facts(b);
    const auto add = [&](const char* name, std::vector<Item> items) {
        if (!items.empty()) comparison.sections.push_back({name, std::move(items)});
    };
    const auto byNumber = [&](const char* list, const char* key) {
        return CompareByNumber(factsA[list], factsB[list], key, tolerance);
    };
    std::vector<Item> analysis;
    for (const char* key : {"cellSize", "timeStep", "startTime", "roomTemperature"}) {
        if (!Same(factsA[key], factsB[key], tolerance))
            AddProperty(analysis, "", {key, factsA[key], factsB[key], 0, ""});
    }
    add("ANALYSIS", analysis);
    add("MATERIALS", byNumber("materials", "number"));
    comparison.cubes = CompareCubes(a, b, tolerance);
    comparison.damping = CompareDampingCubes(a, b, tolerance);
    add("ACTUATOR", CompareByOrder(factsA["actuators"], factsB["actuators"], tolerance));
    std::vector<Item> patches = byNumber("piezos", "id");
    ComparePatches(patches, a, b, tolerance);
    add("PIEZO", std::move(patches));
    add("SENSOR", byNumber("sensors", "id"));
    add("DUMP", byNumber("dumps", "id"));
    std::vector<Item> tables = byNumber("tables", "id");
    CompareSamples(tables, "", a.tables, b.tables, tolerance);
    add("TABLE", std::move(tables));
    std::vector<Item> sets = byNumber("sets", "id");
    CompareSets(sets, a, b);
    add("SET", std::move(sets));
    return comparison;
}
