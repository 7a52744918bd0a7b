#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "export/Deflater.h"
#include "export/OutputFile.h"

/// A ZIP archive, with the 64-bit sizes that large files need.
class ZipFile {
public:
    ZipFile(OutputFile& out, bool compress) : out_(out), compress_(compress) {}

    void BeginEntry(const std::string& name);
    void Data(std::string_view bytes);
    void EndEntry();
    void End();

private:
    struct Entry {
        std::string name;
        std::uint64_t start = 0;
        std::uint64_t size = 0;
        std::uint64_t compressedSize = 0;
        std::uint32_t checksum = 0;
    };

    std::string LocalHeader(const Entry& entry) const;
    std::string DirectoryEntry(const Entry& entry) const;
    void Take(std::string_view bytes, bool last);

    OutputFile& out_;
    bool compress_;
    std::vector<Entry> entries_;
    std::unique_ptr<Deflater> deflater_;
};
