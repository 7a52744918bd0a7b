#include <Orvalo3DReader/Model/PiezoData.h>

#include "Common/Raise.h"
#include "Common/WithinMemory.h"

namespace orvalo {

unsigned int PiezoData::Key(short x, short y) {
    return static_cast<unsigned int>(static_cast<unsigned short>(y)) << 16U | static_cast<unsigned short>(x);
}

void PiezoData::Add(short x, short y, unsigned short tableU, unsigned short tableV, unsigned short tableW) {
    const unsigned int key = Key(x, y);
    if (cells_.count(key) != 0)
        Raise(module::PiezoData, knownLine::PiezoPointDuplicated, ReaderMessages::PiezoPointDuplicated, int{x}, int{y});
    WithinMemory(module::PiezoData, knownLine::PiezoPoint, [&] {
        if (!storage_) storage_ = std::make_shared<std::deque<Cell>>();
        cells_.emplace(key, &storage_->emplace_back(x, y, tableU, tableV, tableW));
    });
}

}  // namespace orvalo
