#include "VtkImage.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "Parallel.h"
#include "PathText.h"
#include "export/OutputFile.h"
#include "export/VtkFile.h"

namespace {

/// All threads together.
constexpr std::size_t slabBytes = std::size_t{32} << 20U;

/// Points, of which there is one more than cells.
std::string ExtentOf(const GridRegion& region) {
    const auto range = [](int first, std::size_t size) {
        return fmt::format("{} {}", first, first + static_cast<int>(size));
    };
    return range(region.first.x, region.sizeX) + " " + range(region.first.y, region.sizeY) + " " +
           range(region.first.z, region.sizeZ);
}

std::string SpacingOf(const CellData& data) {
    return fmt::format("Origin=\"0 0 0\" Spacing=\"{0} {0} {0}\"", data.cellSize);
}

std::uint64_t BytesPerCell(const CellData& data) {
    std::uint64_t bytes = 0;
    for (const CellField& field : data.fields) bytes += SizeOf(field.type);
    return bytes;
}

void RequireSpaceFor(const CellData& data, const std::string& path, const ExportOptions& options) {
    if (options.compress) return;
    RequireSpace(path, GridRegion(data.box).Cells() * BytesPerCell(data), " A .vtu holds only the cells that exist.");
}

/// Writes fields that fit into memory together.
void WriteTogether(VtkFile& file, const CellData& data, const std::vector<const CellField*>& fields,
                   const GridRegion& region, ExportProgress& progress) {
    std::vector<std::vector<unsigned char>> buffers;
    std::vector<CellData::Target> targets;
    for (const CellField* field : fields) {
        buffers.emplace_back(region.Cells() * SizeOf(field->type));
        targets.push_back({field, buffers.back().data()});
    }
    data.Fill(targets, {&region, 0, region.Rows()});
    for (const std::vector<unsigned char>& buffer : buffers) {
        file.BeginArray(buffer.size());
        file.Data(buffer.data(), buffer.size());
        file.EndArray();
        progress.done += buffer.size();
    }
}

/// Writes a field that does not, a part of the rows at a time.
void WriteInParts(VtkFile& file, const CellData& data, const CellField& field, const GridRegion& region,
                  std::size_t memory, ExportProgress& progress) {
    const std::size_t size = SizeOf(field.type);
    const std::size_t rowsAtOnce = std::max<std::size_t>(1, memory / (region.sizeX * size));
    std::vector<unsigned char> buffer(rowsAtOnce * region.sizeX * size);
    file.BeginArray(region.Cells() * size);
    for (std::size_t row = 0; row < region.Rows(); row += rowsAtOnce) {
        const GridSlab slab{&region, row, std::min(rowsAtOnce, region.Rows() - row)};
        data.Fill({{&field, buffer.data()}}, slab);
        file.Data(buffer.data(), slab.Cells() * size);
        progress.done += slab.Cells() * size;
    }
    file.EndArray();
}

/// Writes all fields with as few passes over the records as the memory allows.
void WriteFields(VtkFile& file, const CellData& data, const GridRegion& region, std::size_t memory,
                 ExportProgress& progress) {
    for (auto field = data.fields.begin(); field != data.fields.end();) {
        std::vector<const CellField*> together;
        std::uint64_t bytes = 0;
        for (; field != data.fields.end(); ++field) {
            bytes += region.Cells() * SizeOf(field->type);
            if (bytes > memory) break;
            together.push_back(&*field);
        }
        if (together.empty()) {
            WriteInParts(file, data, *field++, region, memory, progress);
        } else {
            WriteTogether(file, data, together, region, progress);
        }
    }
}

void WriteRegion(const CellData& data, const GridRegion& region, OutputFile& out, bool compress, unsigned threads,
                 std::size_t memory, ExportProgress& progress) {
    VtkFile file(out, "ImageData", compress, threads);
    const std::string extent = ExtentOf(region);
    file.Xml(fmt::format("<ImageData WholeExtent=\"{0}\" {1}>\n<Piece Extent=\"{0}\">\n<CellData Scalars=\"{2}\">\n",
                         extent, SpacingOf(data), XmlText(data.fields.front().name)));
    for (const CellField& field : data.fields) file.Declare(field.name, field.type);
    file.Xml("</CellData>\n</Piece>\n</ImageData>\n");
    file.Begin();
    WriteFields(file, data, region, memory, progress);
    file.End();
}

/// Spreads pieces over the axes so that they become compact: by the prime factors of their number, the largest first,
/// each along the axis on which the pieces are then longest.
std::array<int, 3> Spread(int count, const GridRegion& whole) {
    std::vector<int> factors;
    for (int factor = 2; count > 1; ++factor) {
        for (; count % factor == 0; count /= factor) factors.push_back(factor);
    }
    const std::array<std::size_t, 3> sizes = {whole.sizeX, whole.sizeY, whole.sizeZ};
    std::array<int, 3> pieces = {1, 1, 1};
    for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) {
        std::size_t longest = 0;
        for (std::size_t axis = 1; axis < pieces.size(); ++axis) {
            // Lengths are sizes over pieces, compared without division. Of equal ones z is cut, which keeps each piece
            // in one part of what is ordered by it.
            const std::size_t length = sizes[axis] * static_cast<std::size_t>(pieces[longest]);
            if (length >= sizes[longest] * static_cast<std::size_t>(pieces[axis])) longest = axis;
        }
        pieces[longest] *= *factor;
    }
    return pieces;
}

std::array<int, 3> PiecesOf(const ExportOptions& options, const GridRegion& whole) {
    if (options.pieceCount == 0 && options.pieces[0] > 0) return options.pieces;
    return Spread(options.pieceCount > 0 ? options.pieceCount : static_cast<int>(ThreadCount(options.threads)), whole);
}

/// Cuts a region into about equal parts; no more along an axis than there are cells.
std::vector<GridRegion> Cut(const GridRegion& whole, const std::array<int, 3>& pieces) {
    const std::size_t sizes[] = {whole.sizeX, whole.sizeY, whole.sizeZ};
    std::array<std::vector<std::size_t>, 3> bounds;
    for (std::size_t axis = 0; axis < bounds.size(); ++axis) {
        const std::size_t parts = std::clamp<std::size_t>(static_cast<std::size_t>(pieces[axis]), 1, sizes[axis]);
        for (std::size_t i = 0; i <= parts; ++i) bounds[axis].push_back(sizes[axis] * i / parts);
    }
    std::vector<GridRegion> regions;
    for (std::size_t k = 0; k + 1 < bounds[2].size(); ++k) {
        for (std::size_t j = 0; j + 1 < bounds[1].size(); ++j) {
            for (std::size_t i = 0; i + 1 < bounds[0].size(); ++i) {
                GridRegion region;
                const std::size_t first[] = {bounds[0][i], bounds[1][j], bounds[2][k]};
                region.first.x = static_cast<short>(whole.first.x + static_cast<int>(first[0]));
                region.first.y = static_cast<short>(whole.first.y + static_cast<int>(first[1]));
                region.first.z = static_cast<short>(whole.first.z + static_cast<int>(first[2]));
                region.sizeX = bounds[0][i + 1] - first[0];
                region.sizeY = bounds[1][j + 1] - first[1];
                region.sizeZ = bounds[2][k + 1] - first[2];
                regions.push_back(region);
            }
        }
    }
    return regions;
}

void WriteIndex(const CellData& data, const GridRegion& whole, const std::vector<GridRegion>& regions,
                const std::vector<std::string>& names, OutputFile& out) {
    out.Write(
        fmt::format("<?xml version=\"1.0\"?>\n<VTKFile type=\"PImageData\" version=\"1.0\" "
                    "byte_order=\"LittleEndian\" header_type=\"UInt64\">\n"
                    "<PImageData WholeExtent=\"{}\" GhostLevel=\"0\" {}>\n<PCellData Scalars=\"{}\">\n",
                    ExtentOf(whole), SpacingOf(data), XmlText(data.fields.front().name)));
    for (const CellField& field : data.fields) {
        out.Write(fmt::format("<PDataArray type=\"{}\" Name=\"{}\" NumberOfComponents=\"1\" />\n", VtkName(field.type),
                              XmlText(field.name)));
    }
    out.Write("</PCellData>\n");
    for (std::size_t i = 0; i < regions.size(); ++i) {
        out.Write(fmt::format("<Piece Extent=\"{}\" Source=\"{}\" />\n", ExtentOf(regions[i]), XmlText(names[i])));
    }
    out.Write("</PImageData>\n</VTKFile>\n");
}

}  // namespace

void WriteVtkImage(const CellData& data, const std::string& path, const ExportOptions& options,
                   ExportProgress& progress) {
    const GridRegion whole(data.box);
    RequireSpaceFor(data, path, options);
    progress.total = whole.Cells() * BytesPerCell(data);
    OutputFile out(path, options.overwrite);
    WriteRegion(data, whole, out, options.compress, options.threads, slabBytes, progress);
    out.Commit();
}

void WriteVtkPieces(const CellData& data, const std::string& path, const ExportOptions& options,
                    ExportProgress& progress) {
    const GridRegion whole(data.box);
    RequireSpaceFor(data, path, options);
    progress.total = whole.Cells() * BytesPerCell(data);
    const std::vector<GridRegion> regions = Cut(whole, PiecesOf(options, whole));
    const std::filesystem::path target = PathOf(path);
    std::vector<std::string> names;
    names.reserve(regions.size());
    for (std::size_t i = 0; i < regions.size(); ++i)
        names.push_back(fmt::format("{}_{}.vti", TextOf(target.stem()), i));
    const auto pathOf = [&](std::size_t i) { return TextOf(target.parent_path() / PathOf(names[i])); };
    const std::size_t memory = slabBytes / ThreadCount(options.threads);
    OutputFile index(path, options.overwrite);
    WriteIndex(data, whole, regions, names, index);
    // No piece gets its name before all are complete.
    std::vector<std::unique_ptr<OutputFile>> files(regions.size());
    ForEachInParallel(regions.size(), options.threads, [&](std::size_t i) {
        files[i] = std::make_unique<OutputFile>(pathOf(i), options.overwrite);
        WriteRegion(data, regions[i], *files[i], options.compress, 1, memory, progress);
        files[i]->Close();
    });
    for (const auto& file : files) file->Commit();
    index.Commit();
}
