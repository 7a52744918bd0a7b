#include "ZipFile.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <zlib.h>

namespace {

/// Numbers one after the other, little-endian.
class Fields {
public:
    template <class Number>
    Fields& Add(Number number) {
        char raw[sizeof number];
        std::memcpy(raw, &number, sizeof number);
        bytes_.append(raw, sizeof number);
        return *this;
    }
    Fields& Add(const std::string& text) {
        bytes_ += text;
        return *this;
    }
    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = std::uint64_t;

constexpr U16 version = 45;
constexpr U16 deflated = 8;
/// 1 January 1980, so that the same data makes the same file.
constexpr U16 date = 0x21;
/// Stands where a 64-bit number follows elsewhere.
constexpr U32 elsewhere = 0xFFFFFFFF;
constexpr U16 wideFields = 1;

}  // namespace

std::string ZipFile::LocalHeader(const Entry& entry) const {
    Fields fields;
    fields.Add(U32{0x04034b50}).Add(version).Add(U16{0}).Add(compress_ ? deflated : U16{0}).Add(U16{0}).Add(date);
    fields.Add(entry.checksum).Add(elsewhere).Add(elsewhere).Add(static_cast<U16>(entry.name.size())).Add(U16{20});
    fields.Add(entry.name).Add(wideFields).Add(U16{16}).Add(entry.size).Add(entry.compressedSize);
    return fields.Bytes();
}

std::string ZipFile::DirectoryEntry(const Entry& entry) const {
    Fields fields;
    fields.Add(U32{0x02014b50}).Add(version).Add(version).Add(U16{0}).Add(compress_ ? deflated : U16{0}).Add(U16{0});
    fields.Add(date).Add(entry.checksum).Add(elsewhere).Add(elsewhere).Add(static_cast<U16>(entry.name.size()));
    fields.Add(U16{28}).Add(U16{0}).Add(U16{0}).Add(U16{0}).Add(U32{0}).Add(elsewhere).Add(entry.name);
    fields.Add(wideFields).Add(U16{24}).Add(entry.size).Add(entry.compressedSize).Add(entry.start);
    return fields.Bytes();
}

void ZipFile::BeginEntry(const std::string& name) {
    entries_.push_back({name, out_.Position()});
    out_.Write(LocalHeader(entries_.back()));
    if (compress_) deflater_ = std::make_unique<Deflater>(Deflater::Form::raw);
}

void ZipFile::Take(std::string_view bytes, bool last) {
    Entry& entry = entries_.back();
    const auto write = [&](std::string_view part) {
        entry.compressedSize += part.size();
        out_.Write(part);
    };
    if (compress_) {
        deflater_->Write(bytes, last, write);
    } else {
        write(bytes);
    }
}

void ZipFile::Data(std::string_view bytes) {
    Entry& entry = entries_.back();
    entry.size += bytes.size();
    entry.checksum =
        static_cast<U32>(crc32_z(entry.checksum, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
    Take(bytes, false);
}

void ZipFile::EndEntry() {
    Take({}, true);
    const std::string header = LocalHeader(entries_.back());
    out_.Patch(entries_.back().start, header.data(), header.size());
}

void ZipFile::End() {
    const U64 start = out_.Position();
    for (const Entry& entry : entries_) out_.Write(DirectoryEntry(entry));
    const U64 end = out_.Position();
    const U64 count = entries_.size();
    Fields fields;
    fields.Add(U32{0x06064b50}).Add(U64{44}).Add(version).Add(version).Add(U32{0}).Add(U32{0});
    fields.Add(count).Add(count).Add(end - start).Add(start);
    fields.Add(U32{0x07064b50}).Add(U32{0}).Add(end).Add(U32{1});
    constexpr U16 countElsewhere = 0xFFFF;
    fields.Add(U32{0x06054b50}).Add(U16{0}).Add(U16{0}).Add(countElsewhere).Add(countElsewhere);
    fields.Add(elsewhere).Add(elsewhere).Add(U16{0});
    out_.Write(fields.Bytes());
}
