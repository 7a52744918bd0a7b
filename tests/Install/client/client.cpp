#include <cstdio>
#include <memory>

#include <Orvalo3DReader/Orvalo3DReader.h>

// Reads the model and the results that it is given and prints a fact of each.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        orvalo::Model model;
        orvalo::Reader(argv[1], false).Execute(&model, true);
        const std::unique_ptr<orvalo::Results> results = orvalo::ReadResults(argv[2]);
        std::size_t cubes = 0;
        for (const orvalo::Cube cube : model.cubes.Records()) cubes += cube.material != 0 ? 1 : 0;
        std::printf("%zu cubes, %u rows\n", cubes, results->RowCount());
    } catch (const orvalo::ReadError& failure) {
        // Its type must be the one that the library threw, and codes must be constants here.
        switch (failure.code()) {
            case orvalo::ReaderMessages::OutOfMemory.code:
                return 3;
            case orvalo::ReaderMessages::ErrorOpeningInputFile.code:
                std::printf("not opened\n");
                return failure.Place().Known() ? 3 : 0;
            default:
                return 3;
        }
    } catch (orvalo::Exception& failure) {
        std::printf("%d %s\n", failure.code(), failure.description().c_str());
        return 1;
    }
    return 0;
}
