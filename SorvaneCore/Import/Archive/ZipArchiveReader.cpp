#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"

#include <algorithm>
#include <span>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/Archive/RawDeflate.h"
#include "SorvaneCore/Import/Archive/ZipError.h"
#include "SorvaneCore/Import/ByteReader.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ZipArchiveReader {

namespace {

constexpr std::uint32_t endSignature = 0x06054B50;
constexpr std::uint32_t recordSignature = 0x02014B50;
constexpr std::uint32_t localSignature = 0x04034B50;
constexpr std::size_t endSize = 22;
constexpr std::size_t recordSize = 46;
constexpr std::size_t localSize = 30;
constexpr std::size_t longestComment = 65535;
constexpr std::uint16_t zip64Count = 0xFFFF;
constexpr std::uint32_t zip64Field = 0xFFFFFFFF;
constexpr std::uint16_t stored = 0;
constexpr std::uint16_t deflated = 8;

/// An archive may unpack to so much, whatever its size; beyond that, to so many times its size.
constexpr std::uint64_t unpackedFloor = std::uint64_t{256} << 20;
constexpr std::uint64_t unpackedPerByte = 128;

std::uint16_t word16(std::string_view bytes, std::size_t position) {
    return ByteReader::number<std::uint16_t>(bytes.data() + position);
}

std::uint32_t word32(std::string_view bytes, std::size_t position) {
    return ByteReader::number<std::uint32_t>(bytes.data() + position);
}

ZipError zip64() {
    return ZipError::unsupported("ZIP64 archives are not supported.");
}

std::string_view endRecord(std::string_view bytes) {
    if (bytes.size() < endSize) {
        throw ZipError::notAZipFile();
    }
    const std::size_t lowest = bytes.size() - std::min(bytes.size(), endSize + longestComment);
    for (std::size_t position = bytes.size() - endSize + 1; position-- > lowest;) {
        if (word32(bytes, position) == endSignature) {
            return bytes.substr(position, endSize);
        }
    }
    throw ZipError::notAZipFile();
}

Entry readRecord(ByteReader& reader) {
    const std::optional<std::string_view> record = reader.readBytes(recordSize);
    if (!record || word32(*record, 0) != recordSignature) {
        throw ZipError::corruptArchive("Central directory record is malformed.");
    }
    const std::optional<std::string_view> name = reader.readBytes(word16(*record, 28));
    if (!name) {
        throw ZipError::corruptArchive("Central directory record is truncated.");
    }
    if (word32(*record, 20) == zip64Field || word32(*record, 24) == zip64Field ||
        word32(*record, 42) == zip64Field) {
        throw zip64();
    }
    // Where these do not fit, the next record, if one is wanted, is malformed.
    const std::int64_t skipped = word16(*record, 30) + word16(*record, 32);
    if (!reader.readBytes(skipped)) {
        reader.readBytes(static_cast<std::int64_t>(reader.remaining()));
    }
    return {.name = UnicodeText::repaired(*name),
            .method = word16(*record, 10),
            .compressedSize = word32(*record, 20),
            .uncompressedSize = word32(*record, 24),
            .localHeaderOffset = word32(*record, 42)};
}

std::string_view packedBytes(std::string_view bytes, const Entry& entry) {
    ByteReader reader(bytes, static_cast<std::size_t>(entry.localHeaderOffset));
    const std::optional<std::string_view> header = reader.readBytes(localSize);
    if (!header || word32(*header, 0) != localSignature) {
        throw ZipError::corruptArchive("Local file header is malformed for " + entry.name + ".");
    }
    const std::int64_t nameAndExtra = word16(*header, 26) + word16(*header, 28);
    const bool fits = reader.readBytes(nameAndExtra).has_value();
    const std::optional<std::string_view> data = reader.readBytes(entry.compressedSize);
    if (!fits || !data) {
        throw ZipError::corruptArchive("Entry data is truncated for " + entry.name + ".");
    }
    return *data;
}

std::string unpacked(std::string_view bytes, const Entry& entry) {
    const std::string_view packed = packedBytes(bytes, entry);
    if (entry.method == stored) {
        return std::string(packed);
    }
    if (entry.method != deflated) {
        throw ZipError::unsupported("Compression method " + NumberText::integer(entry.method) +
                                    " in " + entry.name + ".");
    }
    if (entry.uncompressedSize == 0) {
        return {};
    }
    std::optional<std::string> data =
        RawDeflate::inflate(packed, static_cast<std::uint64_t>(entry.uncompressedSize));
    if (!data) {
        throw ZipError::corruptArchive("Could not decompress " + entry.name + ".");
    }
    return *std::move(data);
}

/// A path that stays inside; absent for an absolute one and one with "..".
std::optional<std::string> sanitizedPath(std::string_view name) {
    if (name.starts_with('/')) {
        return std::nullopt;
    }
    const bool climbs = name == ".." || name.starts_with("../") || name.ends_with("/..") ||
                        name.find("/../") != name.npos;
    std::optional<std::string> path = climbs ? std::nullopt : standardizedPath(name);
    return path && path->empty() ? std::nullopt : path;
}

std::string refusalText(UnpackedFolder::Refusal refusal, const std::string& name) {
    switch (refusal) {
        case UnpackedFolder::Refusal::pathTooLong:
            return "The name of an entry is too long for a file.";
        case UnpackedFolder::Refusal::folderInTheWay:
            return "A folder stands where the file " + name + " belongs.";
        case UnpackedFolder::Refusal::fileInTheWay:
            break;
    }
    return "A file stands where a folder for " + name + " belongs.";
}

/// What an entry takes when it is unpacked. A stream that cannot hold what is declared takes nothing,
/// as it is refused.
std::uint64_t unpackedSize(const Entry& entry) {
    const auto packed = static_cast<std::uint64_t>(entry.compressedSize);
    const auto declared = static_cast<std::uint64_t>(entry.uncompressedSize);
    return entry.method == stored ? packed : RawDeflate::canHold(packed, declared) ? declared : 0;
}

/// Refuses entries that unpack to far too much, or that share their bytes to that end.
void checkSizes(std::span<const Entry> entries, std::size_t archiveSize) {
    std::uint64_t packed = 0;
    std::uint64_t unpacked = 0;
    for (const Entry& entry : entries) {
        packed += static_cast<std::uint64_t>(entry.compressedSize);
        unpacked += unpackedSize(entry);
    }
    if (unpacked > mostUnpackedBytes(archiveSize)) {
        throw ZipError::unsupported("It unpacks to far more data than a workbook can hold.");
    }
    if (packed > unpackedFloor && packed / 2 > archiveSize) {
        throw ZipError::corruptArchive("Its entries overlap.");
    }
}

}  // namespace

std::vector<Entry> centralDirectoryEntries(std::string_view bytes) {
    const std::string_view end = endRecord(bytes);
    const std::uint16_t count = word16(end, 10);
    const std::uint32_t offset = word32(end, 16);
    if (count == zip64Count || offset == zip64Field) {
        throw zip64();
    }
    ByteReader reader(bytes, offset);
    std::vector<Entry> entries;
    entries.reserve(std::min<std::size_t>(count, reader.remaining() / recordSize));
    for (std::uint16_t i = 0; i < count; ++i) {
        entries.push_back(readRecord(reader));
    }
    return entries;
}

std::uint64_t mostUnpackedBytes(std::size_t archiveSize) {
    return std::max<std::uint64_t>(unpackedFloor, archiveSize * unpackedPerByte);
}

std::optional<std::string> entryData(std::string_view bytes, std::string_view name) {
    const std::vector<Entry> entries = centralDirectoryEntries(bytes);
    const auto entry = std::ranges::find(entries, name, &Entry::name);
    if (entry == entries.end()) {
        return std::nullopt;
    }
    checkSizes({entry, 1}, bytes.size());
    return unpacked(bytes, *entry);
}

UnpackedFolder extract(std::string_view bytes) {
    UnpackedFolder folder;
    const std::vector<Entry> entries = centralDirectoryEntries(bytes);
    checkSizes(entries, bytes.size());
    for (const Entry& entry : entries) {
        if (entry.name.ends_with('/')) {
            continue;
        }
        const std::optional<std::string> path = sanitizedPath(entry.name);
        if (!path) {
            throw ZipError::corruptArchive("Entry name escapes the archive: " + entry.name);
        }
        const auto refusal = folder.place(*path, unpacked(bytes, entry));
        if (refusal) {
            throw ZipError::corruptArchive(refusalText(*refusal, entry.name));
        }
    }
    return folder;
}

}  // namespace sorvane::ZipArchiveReader
