#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>

#include <Orvalo3DReader/Reader/ReadModel.h>
#include <Orvalo3DReader/Reader/ReadResults.h>
#include <Orvalo3DReader/Results/ResultsTxt.h>
#include <Orvalo3DReader/Write/WriteModel.h>
#include <Orvalo3DReader/Write/WriteResultsMat.h>
#include <Orvalo3DReader/Write/WriteResultsTxt.h>

#include "Support/ModelFiles.h"
#include "Support/ModelText.h"

/// What was read is written, read and written again: what is wrong with that, or nothing.
namespace orvalo::support {

inline std::string FileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline WriteOptions Overwriting(std::string cubesFile = {}) {
    WriteOptions options;
    options.overwrite = true;
    options.cubesFile = std::move(cubesFile);
    return options;
}

/// All of a model but the bounds, which rows may have widened that others replaced, and all bytes of the grid.
inline std::string ShowWritten(const Model& model) {
    Model shown = model;
    shown.bounds = {};
    const Cubes& cubes = model.cubes;
    std::uint64_t hash = 1469598103934665603U;
    const auto add = [&hash](const void* data, std::size_t size) {
        for (std::size_t i = 0; data != nullptr && i < size; ++i) {
            hash = (hash ^ static_cast<const unsigned char*>(data)[i]) * 1099511628211U;
        }
    };
    add(cubes.CubesPtr(), cubes.Records().size() * Cubes::recordSize);
    add(cubes.TemperaturesPtr(), cubes.Records().size() * sizeof(double));
    add(cubes.DampingCubesPtr(), cubes.DampingRecords().size() * Cubes::dampingRecordSize);
    return ShowModel(shown) + std::to_string(hash);
}

inline std::string RoundTripProblem(const Model& model, bool doublePrecision) {
    const std::string path = ScratchDirectory() + "/written.model";
    ReadOptions reading;
    reading.doublePrecision = doublePrecision;
    const std::string shown = ShowWritten(model);
    std::string firstBytes;
    for (const char* cubesFile : {"", "written.cubes"}) {
        try {
            WriteModel(model, path, Overwriting(cubesFile));
            const std::string bytes = FileBytes(path);
            const Model again = ReadModel(path, reading);
            if (ShowWritten(again) != shown) return "not equal:\n" + shown + "\n---\n" + ShowWritten(again) + bytes;
            WriteModel(again, path, Overwriting(cubesFile));
            if (FileBytes(path) != bytes) return "the second writing differs:\n" + bytes + "---\n" + FileBytes(path);
        } catch (const Exception& failure) {
            return failure.what() + "\nof\n" + shown + FileBytes(path);
        }
    }
    return {};
}

/// Values by their bits, but for the one that tells a signalling NaN.
inline bool SameValue(double a, double b) {
    const auto bits = [](double x) {
        return std::bit_cast<std::uint64_t>(x) | (std::isnan(x) ? std::uint64_t{1} << 51U : 0);
    };
    return bits(a) == bits(b);
}

/// Whether both have the same values and, as far as both have them, the same index columns.
inline bool SameResults(const Results& a, const Results& b) {
    if (a.RowCount() != b.RowCount() || a.ValuesColCount() != b.ValuesColCount()) return false;
    if ((a.IndicesColCount() == 0) != (b.IndicesColCount() == 0)) return false;
    const unsigned int indices = std::min(a.IndicesColCount(), b.IndicesColCount());
    for (unsigned int row = 0; row < a.RowCount(); ++row) {
        for (unsigned int col = 0; col < indices; ++col) {
            if (a.IndexGet(col, row) != b.IndexGet(col, row)) return false;
        }
        for (unsigned int col = 0; col < a.ValuesColCount(); ++col) {
            if (!SameValue(a.ValueGet(col, row), b.ValueGet(col, row))) return false;
        }
    }
    return true;
}

inline std::string RoundTripProblem(const Results& results) {
    const unsigned int indices = results.IndicesColCount();
    const unsigned int values = results.ValuesColCount();
    const auto* const before = dynamic_cast<const ResultsTxt*>(&results);
    // Of a file so short that no header of a MAT-file fits into it.
    const bool seemsMat =
        before != nullptr && values > 0 && before->ColumnNames().front().starts_with("MATLAB 5.0 MAT-file");
    const struct {
        const char* name;
        void (*write)(const Results&, const std::string&, const WriteOptions&);
        bool writable;
    } forms[] = {
        {"text", WriteResultsTxt, values > 0 && !seemsMat && (indices == 0 || indices == 3 || indices == 4)},
        {"MAT-file", WriteResultsMat, values > 0 && values <= 9 && indices >= 3},
    };
    const std::string path = ScratchDirectory() + "/written.results";
    for (const auto& form : forms) {
        try {
            form.write(results, path, Overwriting());
            if (!form.writable) return std::string("was written as ") + form.name;
            const std::string bytes = FileBytes(path);
            const std::unique_ptr<Results> again = ReadResults(path);
            if (!SameResults(results, *again)) return std::string("not equal as ") + form.name + '\n' + bytes;
            const auto* const after = dynamic_cast<const ResultsTxt*>(again.get());
            if (before != nullptr && after != nullptr && before->ColumnNames() != after->ColumnNames()) return "names";
            form.write(*again, path, Overwriting());
            if (FileBytes(path) != bytes) return std::string("the second writing differs as ") + form.name;
        } catch (const Exception& failure) {
            if (form.writable) return std::string(form.name) + ": " + failure.what();
        }
    }
    return {};
}

}  // namespace orvalo::support
