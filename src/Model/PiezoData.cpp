#include <new>

#include <Orvalo3DReader/Model/PiezoData.h>

#include "Common/Raise.h"

namespace orvalo {

unsigned int PiezoData::Key(short x, short y) {
    return static_cast<unsigned int>(static_cast<unsigned short>(y)) << 16U | static_cast<unsigned short>(x);
}

// The line numbers of both failures are fixed: clients tell by them what was refused.
void PiezoData::Add(short x, short y, unsigned short tableU, unsigned short tableV, unsigned short tableW) {
    const unsigned int key = Key(x, y);
    if (cells_.count(key) != 0) Raise(module::PiezoData, 35, ReaderMessages::PiezoPointDuplicated, int{x}, int{y});
    try {
        if (!storage_) storage_ = std::make_shared<std::deque<Cell>>();
        cells_.emplace(key, &storage_->emplace_back(x, y, tableU, tableV, tableW));
    } catch (const std::bad_alloc&) {
        Raise(module::PiezoData, 41, ReaderMessages::OutOfMemory);
    }
}

}  // namespace orvalo
