#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "export/CellData.h"
#include "export/OutputFile.h"

/// A text as it stands between quotes in XML.
std::string XmlText(std::string_view text);

/// A VTK file in XML with its arrays appended: first the XML with all arrays declared, then Begin, then their data in
/// the same order, then End.
class VtkFile {
public:
    /// `type` is such as "ImageData". `threads` is how many may compress.
    VtkFile(OutputFile& out, const std::string& type, bool compress, unsigned threads);

    void Xml(std::string_view text) { out_.Write(text); }
    void Declare(const std::string& name, NumberType type, int components = 1);
    void Begin();

    /// Starts the data of the next array, of which the size is known.
    void BeginArray(std::uint64_t bytes);
    void Data(const void* data, std::size_t size);
    void EndArray();

    void End();

private:
    static constexpr std::size_t blockSize = std::size_t{1} << 18U;

    void CompressPending();

    OutputFile& out_;
    std::string type_;
    bool compress_;
    unsigned threads_;
    /// Where the offsets of the arrays stand in the XML.
    std::vector<std::uint64_t> offsetPlaces_;
    std::vector<std::uint64_t> offsets_;
    std::uint64_t base_ = 0;
    std::uint64_t blocksPlace_ = 0;
    std::vector<std::uint64_t> blockSizes_;
    /// Data that is not compressed yet.
    std::vector<unsigned char> pending_;
};
