#pragma once

#include <string_view>

/// The page of `orvalo view` with places for its data, made of the files beside this one when the tool is built.
std::string_view PageText();
