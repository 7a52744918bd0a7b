#pragma once

#include <string_view>

#include "Common/MessageCatalogue.h"

namespace orvalo::fuzz {

/// Whether `text` is what filling the conversions (%d and %s) of `format` can give.
inline bool Matches(std::string_view format, std::string_view text) {
    for (; !format.empty(); format.remove_prefix(1)) {
        if (format.substr(0, 2) == "%s") {
            for (std::size_t taken = 0; taken <= text.size(); ++taken) {
                if (Matches(format.substr(2), text.substr(taken))) return true;
            }
            return false;
        }
        if (format.substr(0, 2) == "%d") {
            if (!text.empty() && text.front() == '-') text.remove_prefix(1);
            const std::size_t digits = text.find_first_not_of("0123456789");
            if (text.empty() || digits == 0) return false;
            text.remove_prefix(digits == std::string_view::npos ? text.size() : digits);
            format.remove_prefix(1);
            continue;
        }
        if (text.empty() || text.front() != format.front()) return false;
        text.remove_prefix(1);
    }
    return text.empty();
}

/// Whether a message, without the place put before it, is the catalogue's text for that code.
inline bool IsCatalogueText(int code, std::string_view text) {
    const ExceptionMessage* const entry = FindMessage(code);
    return entry != nullptr && Matches(entry->format, text);
}

}  // namespace orvalo::fuzz
