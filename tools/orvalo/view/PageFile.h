#pragma once

#include <cstddef>

#include <nlohmann/json.hpp>

#include "InputFile.h"
#include "view/PageBlocks.h"

/// What a page tells of a file, for its scripts; large data goes to `blocks`, which should not grow by more than about
/// `room` bytes: then values are rounded more.
nlohmann::ordered_json PageFile(const InputFile& file, bool cubesOnly, PageBlocks& blocks, std::size_t room);
