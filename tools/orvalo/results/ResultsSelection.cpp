#include "ResultsSelection.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include <fmt/format.h>

bool ResultsSelection::Whole() const {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (columns_[column] != column) return false;
    }
    return !rows_ && columns_.size() == table_->Columns();
}

std::vector<std::string> ResultsSelection::IndexNames() const {
    std::vector<std::string> names = {"x", "y", "z", "f"};
    for (std::size_t i = names.size(); i < Indices(); ++i) names.push_back(fmt::format("f{}", i - 2));
    names.resize(Indices());
    return names;
}

std::vector<std::string> ResultsSelection::UniqueNames() const {
    const std::vector<std::string> indices = IndexNames();
    std::set<std::string> taken(indices.begin(), indices.end());
    std::vector<std::string> names;
    for (std::size_t column = 0; column < Columns(); ++column) {
        const std::string& name = ColumnName(column);
        const std::string base = name.empty() ? fmt::format("v{}", columns_[column] + 1) : name;
        std::string unique = base;
        for (int number = 2; !taken.insert(unique).second; ++number) unique = fmt::format("{}_{}", base, number);
        names.push_back(unique);
    }
    return names;
}
