#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <Orvalo3DReader/Model/Model.h>

#include "compare/CellComparison.h"
#include "compare/Tolerance.h"

/// In what two models differ, section by section. What follows from something else, such as generated tables, is not
/// told again.
struct ModelComparison {
    /// Something that both say otherwise. Of long lists, such as samples, only how many entries differ and which is the
    /// first; the values are then null.
    struct Property {
        std::string name;
        nlohmann::ordered_json a;
        nlohmann::ordered_json b;
        std::size_t entries = 0;
        std::string firstEntry;
    };
    enum class Kind { added, removed, changed };
    /// One of the things that a section, or several of one name, are about.
    struct Item {
        /// Such as "#3"; empty where the section is about one thing.
        std::string name;
        Kind kind = Kind::changed;
        /// Of a changed one.
        std::vector<Property> properties;
    };
    struct Section {
        /// As in the file.
        std::string name;
        std::vector<Item> items;
    };

    /// Those that differ.
    std::vector<Section> sections;
    CellComparison cubes;
    CellComparison damping;

    bool Equal() const { return sections.empty() && cubes.Count() == 0 && damping.Count() == 0; }
};

ModelComparison Compare(const orvalo::Model& a, const orvalo::Model& b, const Tolerance& tolerance);
