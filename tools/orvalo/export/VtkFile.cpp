#include "VtkFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <zlib.h>

#include "HarmlessText.h"
#include "Parallel.h"

namespace {

/// As wide as any offset.
constexpr std::size_t offsetWidth = 20;
constexpr std::size_t blocksAtOnce = 16;

std::vector<unsigned char> Compressed(const unsigned char* data, std::size_t size) {
    constexpr int level = 4;
    // Blocks are small enough for zlib's numbers, which have 32 bits on some systems.
    const auto given = static_cast<uLong>(size);
    uLongf length = compressBound(given);
    std::vector<unsigned char> block(length);
    if (compress2(block.data(), &length, data, given, level) != Z_OK) throw std::runtime_error("zlib failed");
    block.resize(length);
    return block;
}

}  // namespace

std::string XmlText(std::string_view text) {
    std::string escaped;
    for (const char c : Harmless(text)) {
        constexpr std::pair<char, const char*> entities[] = {
            {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}};
        const auto* entity =
            std::find_if(std::begin(entities), std::end(entities), [c](const auto& e) { return e.first == c; });
        escaped += entity == std::end(entities) ? std::string(1, c) : entity->second;
    }
    return escaped;
}

VtkFile::VtkFile(OutputFile& out, const std::string& type, bool compress, unsigned threads)
    : out_(out), type_(type), compress_(compress), threads_(threads) {
    Xml(
        fmt::format("<?xml version=\"1.0\"?>\n<VTKFile type=\"{}\" version=\"1.0\" byte_order=\"LittleEndian\" "
                    "header_type=\"UInt64\"{}>\n",
                    type, compress ? " compressor=\"vtkZLibDataCompressor\"" : ""));
}

void VtkFile::Declare(const std::string& name, NumberType type, int components) {
    Xml(fmt::format("<DataArray type=\"{}\" Name=\"{}\" NumberOfComponents=\"{}\" format=\"appended\" offset=\"",
                    VtkName(type), XmlText(name), components));
    offsetPlaces_.push_back(out_.Position());
    Xml(std::string(offsetWidth, ' ') + " />\n");
}

void VtkFile::Begin() {
    Xml("<AppendedData encoding=\"raw\">\n_");
    base_ = out_.Position();
}

void VtkFile::BeginArray(std::uint64_t bytes) {
    offsets_.push_back(out_.Position() - base_);
    if (!compress_) {
        out_.Write(&bytes, sizeof bytes);
        return;
    }
    const std::uint64_t blocks = (bytes + blockSize - 1) / blockSize;
    // The size of the last block is 0 if it is full.
    const std::uint64_t head[] = {blocks, blockSize, bytes % blockSize};
    out_.Write(head, sizeof head);
    blocksPlace_ = out_.Position();
    blockSizes_.clear();
    const std::vector<std::uint64_t> sizesToCome(blocks);
    out_.Write(sizesToCome.data(), blocks * sizeof(std::uint64_t));
}

void VtkFile::Data(const void* data, std::size_t size) {
    if (!compress_) {
        out_.Write(data, size);
        return;
    }
    const auto* from = static_cast<const unsigned char*>(data);
    while (size > 0) {
        const std::size_t taken = std::min(size, blocksAtOnce * blockSize - pending_.size());
        pending_.insert(pending_.end(), from, from + taken);
        if (pending_.size() == blocksAtOnce * blockSize) CompressPending();
        from += taken;
        size -= taken;
    }
}

void VtkFile::CompressPending() {
    std::vector<std::vector<unsigned char>> blocks((pending_.size() + blockSize - 1) / blockSize);
    ForEachInParallel(blocks.size(), threads_, [&](std::size_t i) {
        const std::size_t start = i * blockSize;
        blocks[i] = Compressed(pending_.data() + start, std::min(blockSize, pending_.size() - start));
    });
    for (const std::vector<unsigned char>& block : blocks) {
        out_.Write(block.data(), block.size());
        blockSizes_.push_back(block.size());
    }
    pending_.clear();
}

void VtkFile::EndArray() {
    if (!compress_) return;
    CompressPending();
    out_.Patch(blocksPlace_, blockSizes_.data(), blockSizes_.size() * sizeof(std::uint64_t));
}

void VtkFile::End() {
    Xml("\n</AppendedData>\n</VTKFile>\n");
    for (std::size_t i = 0; i < offsets_.size(); ++i) {
        const std::string offset = fmt::format("{}\"", offsets_[i]);
        out_.Patch(offsetPlaces_[i], offset.data(), offset.size());
    }
}
