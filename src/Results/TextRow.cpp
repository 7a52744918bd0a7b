#include "Results/TextRow.h"

#include <algorithm>
#include <cstddef>

namespace orvalo {

TextColumns NamedColumns(std::string_view line) {
    TextColumns columns;
    for (;;) {
        const std::size_t tab = line.find('\t');
        columns.names.emplace_back(line.substr(0, tab));
        if (tab == std::string_view::npos) break;
        line.remove_prefix(tab + 1);
    }
    const bool indexed = columns.names.size() >= indexNames.size() &&
                         std::equal(indexNames.begin(), indexNames.end(), columns.names.begin());
    columns.indices = indexed ? static_cast<unsigned int>(indexNames.size()) : 0;
    columns.values = static_cast<unsigned int>(columns.names.size()) - columns.indices;
    return columns;
}

}  // namespace orvalo
