#pragma once

#include <Orvalo3DReader/Check/Rules.h>

namespace orvalo {

/// Results files.
inline constexpr Rule resultsRules[] = {
    {"cannot-open-results", Severity::Error, 200, "The results file cannot be opened.", "orvalo check none.txt",
     "orvalo check results.txt"},
    {"cannot-read-results", Severity::Error, 201,
     "The results file cannot be read: it is a directory, or it ends within what it announces.",
     "orvalo check results/", "orvalo check results/end.txt"},
    {"invalid-mat-header", Severity::Error, 202,
     "The header of the MAT-file is not that of version 5 in little-endian order.",
     "a header that ends with 0x01 0x00 M I", "a header that ends with 0x00 0x01 I M"},
    {"not-a-matrix", Severity::Error, 203,
     "An element of the MAT-file is no matrix. Compressed variables are such elements.",
     "save('results.mat', 'val', 'idx', '-v7')", "save('results.mat', 'val', 'idx', '-v6')"},
    {"unsupported-matrix", Severity::Error, 204,
     "A matrix of the MAT-file is not two-dimensional, real and of class double, or has fewer than three columns of "
     "indices.",
     "idx = int16([x, y, z])", "idx = double([x, y, z, w])"},
    {"unsupported-data-format", Severity::Error, 205,
     "The data of a matrix are stored neither as doubles nor as signed 16-bit integers.", "val = zeros(1000, 2)",
     "val = [sin(x), cos(y)]"},
    {"missing-variable-name", Severity::Error, 206,
     "In a matrix other data stand where the name of the variable is due.", "a dimensions tag of 12 bytes",
     "a dimensions tag of 8 bytes"},
    {"variable-name-too-long", Severity::Error, 207, "The name of a variable has more than 4095 bytes.",
     "a name of 5000 letters", "val"},
    {"invalid-data-size", Severity::Error, 208,
     "The size of the data of a variable does not fit its dimensions, as after a name that is padded to eight bytes "
     "rather than four.",
     "4 x 2 doubles in 56 bytes", "4 x 2 doubles in 64 bytes"},
    {"invalid-element-size", Severity::Error, 209,
     "The size of a matrix is not that of what it holds: bytes follow the data, for example to pad them.",
     "4 x 3 16-bit integers, padded to 24 bytes and counted", "4 x 4 16-bit integers in 32 bytes"},
    {"too-many-variables", Severity::Error, 210, "A results file has one matrix of values and one of indices.",
     "save('results.mat', 'val', 'more', 'idx', '-v6')", "save('results.mat', 'val', 'idx', '-v6')"},
    {"different-row-counts", Severity::Error, 211, "Indices and values have different numbers of rows.",
     "idx: 4 x 4, val: 5 x 2", "idx: 5 x 4, val: 5 x 2"},
    {"too-many-mat-columns", Severity::Error, 306, "A matrix of values has at most nine columns.", "val: 1000 x 12",
     "val: 1000 x 9"},
    {"too-many-columns", Severity::Error, 307,
     "A line has more columns than the header, or text where a number is due.",
     "x\ty\tz\tf\tu\n"
     "1\t1\t1\t0\t0.5\t0.25",
     "x\ty\tz\tf\tu\n"
     "1\t1\t1\t0\t0.5"},
    {"too-few-columns", Severity::Error, 308, "A line has fewer columns than the header.",
     "x\ty\tz\tf\tu\n"
     "1\t1\t1\t0",
     "x\ty\tz\tf\tu\n"
     "1\t1\t1\t0\t0.5"},
    {"near-miss-header", Severity::Warning, 0,
     "The first line is nearly that of results with indices, x, y, z and f between tabs, so that all columns are taken "
     "for values.",
     "X Y Z F u", "x\ty\tz\tf\tu"},
    {"model-as-results", Severity::Warning, 0, "The file is a model, and was read as results.",
     "orvalo check --as results plate.model", "orvalo check plate.model"},
    {"foreign-mat-file", Severity::Warning, 0,
     "The file was written by another program in a form that is not read: MATLAB 7.3, compressed, big-endian, without "
     "matrices.",
     "save('results.mat', 'val', 'idx', '-v7.3')", "save('results.mat', 'val', 'idx', '-v6')"},
};

}  // namespace orvalo
