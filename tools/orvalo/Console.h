#pragma once

#include <string>
#include <vector>

/// Has standard streams carry bytes as they are, and a console show them as UTF-8 until the program ends.
void PrepareConsole();

/// What stands on the command line after the program's name, in UTF-8.
std::vector<std::string> CommandLine(int argc, char** argv);
