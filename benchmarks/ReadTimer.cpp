#include <chrono>
#include <exception>
#include <iostream>
#include <string>

#include <Orvalo3DReader/Orvalo3DReader.h>

// Reads the file that each line of the input names, as "model PATH" or "results PATH", and answers with the seconds
// that the library took: what the Python package is measured beside.
int main() {
    std::string kind;
    std::string path;
    while (std::cin >> kind && std::getline(std::cin >> std::ws, path)) {
        try {
            orvalo::ReadOptions options;
            options.threads = 0;
            const auto begin = std::chrono::steady_clock::now();
            if (kind == "model") {
                const orvalo::Model model = orvalo::ReadModel(path, options);
            } else {
                const auto results = orvalo::ReadResults(path, options);
            }
            const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
            std::cout << seconds.count() << std::endl;
        } catch (const orvalo::Exception& exception) {
            std::cerr << exception.what() << '\n';
            return 1;
        }
    }
}
