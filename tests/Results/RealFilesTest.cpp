#include <gtest/gtest.h>

#include "Results/ResultsFiles.h"

namespace orvalo {
namespace {

// The programs that wrote these files, or the scripts that had them written, lie beside them.

TEST(RealFiles, AreReadOrRefused) {
    const std::string nonMatrix = "203 ResultsReader: Unable to read non-matrix objects from MatLab file.";
    const std::string badFlags = "204 ResultsReader: Unsupported matrix format (unknown flags settings).";
    const std::string badData =
        "205 ResultsReader: Unsupported data format (only doubles and 16-bit signed integers are supported).";
    const std::string rowCounts = "211 ResultsMat: Different rows count in indices and values matrices.";
    struct {
        std::string name;
        std::string outcome;
    } const cases[] = {
        // 16-bit data in a matrix of class double is what the reader asks for, but eight bytes of it at a time.
        {"matio-four-rows", "4x2+3 | 1 2 3 ; 1.5 -2 | 4 5 6 ; 3 4.25 | 7 8 -9 ; 5 6 | 10 11 12 ; 7 8"},
        {"matio-padded", "209 ResultsReader: Invalid data block size for 'i' variable."},
        {"matio-int16-class", badFlags},
        // The values alone are fine.
        {"scipy-values", rowCounts},
        {"scipy-values-and-int16-class", badFlags},
        {"scipy-compressed", nonMatrix},
        {"scipy-single", badFlags},
        {"scipy-int32", badFlags},
        {"scipy-complex", badFlags},
        {"scipy-three-dimensions", badFlags},
        {"scipy-nine-byte-name", badData},
        {"scipy-no-variables", "0x0+0"},
        // The second word of its array flags is 1.
        {"octave-doubles", badFlags},
        {"octave-integers-as-doubles", badFlags},
        {"octave-int16", badFlags},
        {"octave-compressed", nonMatrix},
    };
    for (const auto& c : cases) EXPECT_EQ(Outcome(ORVALO_TEST_DATA "/results/" + c.name + ".mat"), c.outcome) << c.name;
}

}  // namespace
}  // namespace orvalo
