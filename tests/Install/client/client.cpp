#include <cstdio>
#include <memory>

#include <Orvalo3DReader/Orvalo3DReader.h>

// Reads the model and the results that it is given and prints a fact of each.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        orvalo::Model model;
        orvalo::Reader(argv[1], false).Execute(&model, true);
        const std::unique_ptr<orvalo::Results> results(orvalo::ResultsReader(argv[2]).Execute());
        std::printf("%zu cubes, %u rows\n", model.cubes.CubesCount(), results->RowCount());
    } catch (orvalo::Exception& failure) {
        std::printf("%d %s\n", failure.code(), failure.description().c_str());
        return 1;
    }
    return 0;
}
