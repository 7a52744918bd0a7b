#pragma once

#include <string>
#include <vector>

/// How the system hands over what the user types and takes what is printed. Lives as long as the program prints.
class Console {
public:
    /// Standard streams carry bytes as they are; a console shows them as UTF-8.
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    /// What stands on the command line after the program's name, in UTF-8.
    static std::vector<std::string> Arguments(int argc, char** argv);
};
