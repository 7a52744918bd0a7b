#pragma once

#include <array>
#include <atomic>
#include <cstdint>

/// How something is exported.
struct ExportOptions {
    /// Whether a file that is there is replaced.
    bool overwrite = false;
    /// Whether the data of formats that can be is compressed.
    bool compress = false;
    /// Into how many pieces a grid is cut.
    int pieceCount = 0;
    /// Along x, y and z, where `pieceCount` is 0. All 0 for as many pieces as there are threads.
    std::array<int, 3> pieces = {0, 0, 0};
    /// Edge of a cube, for results, which do not tell it.
    double cellSize = 1.0;
    /// Models to JSON: with the rows of the grid.
    bool withCubes = false;
    unsigned threads = 0;
};

/// How far an export has come, in units of its own.
struct ExportProgress {
    std::atomic<std::uint64_t> done = 0;
    std::atomic<std::uint64_t> total = 0;
    /// Where `total` is 0, how far the library has come, as it stores it.
    float percent = 0.0F;
};
