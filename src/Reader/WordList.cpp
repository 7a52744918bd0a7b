#include "Reader/WordList.h"

#include "Common/EditDistance.h"

namespace orvalo {

bool WordList::Has(std::string_view text) const {
    for (std::size_t i = 0; i < size_; ++i) {
        if ((*this)[i] == text) return true;
    }
    return false;
}

std::optional<std::string_view> WordList::Nearest(std::string_view text) const {
    // In a short word one letter makes another word; two may be one too many.
    const std::size_t allowed = text.size() < 3 ? 0 : text.size() < 6 ? 1 : 2;
    std::size_t least = allowed + 1;
    std::optional<std::string_view> nearest;
    for (std::size_t i = 0; i < size_; ++i) {
        const std::size_t distance = EditDistance(text, (*this)[i]);
        if (distance == least) nearest.reset();
        if (distance < least) {
            least = distance;
            nearest = (*this)[i];
        }
    }
    return nearest;
}

}  // namespace orvalo
