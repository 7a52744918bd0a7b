#pragma once

#include <cstddef>
#include <cstdio>

/// Whether standard output or standard error goes to a terminal that knows control sequences.
bool IsTerminal(std::FILE* stream);

/// Whether colour is welcome there: on a terminal, unless the user has set NO_COLOR to anything.
bool WantsColour(std::FILE* stream);

/// Columns of the terminal that a stream goes to; 80 where it does not say.
std::size_t TerminalWidth(std::FILE* stream);
