#pragma once

#include <cstdint>
#include <string>

/// The count that a model's CUBES section declares, looked up ahead of reading for the sake of a progress bar. 0 where
/// the starts of the file and of what it includes do not show it.
std::uint64_t DeclaredCubes(const std::string& path);
