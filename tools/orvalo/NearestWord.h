#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// How many letters must be changed, added, dropped or swapped with their neighbour to make one word the other.
std::size_t EditDistance(std::string_view a, std::string_view b);

/// The word that a misspelt one was likely meant to be; empty where none is near.
std::string NearestWord(std::string_view word, const std::vector<std::string>& words);
