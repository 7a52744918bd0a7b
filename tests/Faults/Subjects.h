#pragma once

#include <string>
#include <string_view>

#include "Results/ResultsFiles.h"
#include "Support/ModelFiles.h"

/// The files that the tests of faults read.
namespace orvalo::faults {

/// A model of every section, in two files.
inline constexpr std::string_view smallModel =
    "ANALYSIS cellsize 1 timestep .1 END\n"
    "MATERIALS 1 0 \"s\" 7 5 3 2 2 \"t\" 0 0 1 0 0 2 0 0 .3 END\n"
    "CUBES count 2 format 1 data 1 1 1 1 20\n2 1 1 2 -3 END END\n"
    "DAMPING count 1 data 3 1 1 2 .5 END END\n"
    "ACTUATOR shape point position 1 1 1 input definition method force direction u type fullpulse\r\n"
    "waveform sine envelope none frequency 1 duration 1 phase 0 END\n"
    "ACTUATOR shape point position -1 1 1 input wave method absolute table 7 start 1 END\n"
    "TABLE id 7 count 2 data 0 1 END END ; rise\n"
    "PIEZO id 1 position 0 0 0 direction 0 0 1 method force count 2 data 0 0 t 1 1 1 1 0 i END\n"
    "table id 1 count 1 data 1 END END END\n"
    "DUMP id 2 output all filename \"b.mat\" fileformat mat END include \"inc\"\n"
    "SET id 3 count 400 data 1 1 1, 2 1 1 END END\n";
inline constexpr std::string_view includedPart = "SENSOR id 1 shape point position 1 1 1 output u filename \"a\" END\n";

inline std::string SmallText(int rows) {
    std::string text = "x\ty\tz\tf\tux\tuy\n";
    for (int i = 0; i < rows; ++i) text += std::to_string(i) + "\t4\t5\t0\t1.5\t-2e-3\r\n";
    return text;
}

inline std::string SmallMat(unsigned int rows) {
    MatMatrix values = Values(2, std::vector<double>(2 * std::size_t{rows}, 0.5));
    values.name = "velocity";
    std::vector<short> indices;
    for (unsigned int i = 0; i < 3 * rows; ++i) indices.push_back(static_cast<short>(i));
    return MatHeader() + values.Bytes() + Indices(3, indices).Bytes();
}

}  // namespace orvalo::faults
