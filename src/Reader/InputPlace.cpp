#include <ostream>

#include <Orvalo3DReader/Reader/InputPlace.h>

namespace orvalo {

std::ostream& operator<<(std::ostream& out, const InputPlace& place) {
    return out << place.path << ':' << place.line << ':' << place.column;
}

}  // namespace orvalo
