#include "SorvaneCore/Import/Survey/ZipStore.h"

#include "SorvaneCore/Import/Archive/RawDeflate.h"
#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"
#include "SorvaneCore/Import/Archive/ZipError.h"
#include "SorvaneCore/Import/ByteReader.h"

namespace sorvane::ZipStore {

namespace {

constexpr std::uint32_t localSignature = 0x04034B50;
constexpr std::size_t localSize = 30;
/// The sizes follow the data instead of standing before them.
constexpr std::uint16_t streamedFlag = 0x0008;
constexpr std::uint16_t stored = 0;
constexpr std::uint16_t deflated = 8;

struct LocalEntry {
    std::string_view name;
    std::string_view data;
    std::uint16_t method = 0;
    std::uint32_t size = 0;
};

std::optional<LocalEntry> readEntry(ByteReader& reader) {
    const auto header = reader.readBytes(localSize);
    if (!header || ByteReader::number<std::uint32_t>(header->data()) != localSignature ||
        (ByteReader::number<std::uint16_t>(header->data() + 6) & streamedFlag) != 0) {
        return std::nullopt;
    }
    const auto name = reader.readBytes(ByteReader::number<std::uint16_t>(header->data() + 26));
    const auto extra = reader.readBytes(ByteReader::number<std::uint16_t>(header->data() + 28));
    const auto data = reader.readBytes(ByteReader::number<std::uint32_t>(header->data() + 18));
    if (!name || !extra || !data) {
        return std::nullopt;
    }
    return LocalEntry{.name = *name,
                      .data = *data,
                      .method = ByteReader::number<std::uint16_t>(header->data() + 8),
                      .size = ByteReader::number<std::uint32_t>(header->data() + 22)};
}

std::optional<std::string> unpacked(const LocalEntry& entry) {
    if (entry.method == stored) {
        return std::string(entry.data);
    }
    return entry.method == deflated ? inflate(entry.data, entry.size) : std::nullopt;
}

}  // namespace

std::optional<std::string> extract(std::string_view bytes, std::string_view name) {
    ByteReader reader(bytes);
    while (const std::optional<LocalEntry> entry = readEntry(reader)) {
        if (entry->name == name) {
            const bool isBomb = entry->size > ZipArchiveReader::mostUnpackedBytes(bytes.size());
            return isBomb ? std::nullopt : unpacked(*entry);
        }
    }
    try {
        return ZipArchiveReader::entryData(bytes, name);
    } catch (const ZipError&) {
        return std::nullopt;
    }
}

std::optional<std::string> inflate(std::string_view bytes, std::uint64_t expectedSize) {
    return RawDeflate::inflate(bytes, expectedSize);
}

}  // namespace sorvane::ZipStore
